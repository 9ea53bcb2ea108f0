#!/usr/bin/env python3
"""in_document.py DOCUMENT COMMAND...: runs the command and looks for what it printed, whole and to the letter, in a fenced
block of the document, so that a table there is the one of today. Fails where the command fails, too.
"""
import re
import subprocess
import sys


def main() -> int:
    document, *command = sys.argv[1:]
    run = subprocess.run(command, stdout=subprocess.PIPE, text=True, check=False)
    print(run.stdout, end="", flush=True)
    if run.returncode != 0:
        return run.returncode
    with open(document, encoding="utf-8") as file:
        blocks = re.findall(r"^```\w*\n(.*?)^```$", file.read(), re.MULTILINE | re.DOTALL)
    if run.stdout not in blocks:
        print(f"{document} has another table, or none", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
