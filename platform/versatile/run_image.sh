#!/bin/sh
# run_image.sh IMAGE [ARGUMENT...]: runs an image on the emulated board; its output and exit status are the image's. The
# image gets no input. An image that has not ended after QSTD_IMAGE_SECONDS (240) is ended, with status 124.
set -eu
for tool in qemu-system-arm timeout; do
    command -v "$tool" >/dev/null || { echo "run_image: $tool is missing" >&2; exit 127; }
done

image=$1
configuration=enable=on,target=native
for argument; do
    configuration=$configuration,arg=$(printf '%s' "$argument" | sed 's/,/,,/g')
done

exec timeout "${QSTD_IMAGE_SECONDS:-240}" qemu-system-arm -M versatilepb -cpu arm926 -m 128 -icount shift=7 \
    -audiodev none,id=none -global pl041.audiodev=none -display none -monitor none -serial none -parallel none -no-reboot \
    -semihosting-config "$configuration" -kernel "$image" </dev/null
