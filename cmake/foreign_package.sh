#!/bin/sh
# foreign_package.sh ARCHITECTURE PACKAGE FOLDER: unpacks the Debian package of another architecture into FOLDER, beside
# what is installed and without a change to it: apt keeps its lists and downloads there too. DEBIAN_MIRROR in the
# environment names another server than Debian's own.
set -eu
architecture=$1 package=$2 folder=$3

. /etc/os-release
rm -rf "$folder"
mkdir -p "$folder/apt/state" "$folder/apt/lists/partial" "$folder/apt/cache/archives/partial"
cd "$folder/apt"
folder=$(cd .. && pwd)

cat >sources.list <<END
deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] ${DEBIAN_MIRROR:-http://deb.debian.org/debian} $VERSION_CODENAME main
END
cat >apt.conf <<END
APT::Architecture "$architecture";
APT::Architectures { "$architecture"; };
APT::Sandbox::User "root";
Dir::State "$folder/apt/state";
Dir::State::Lists "$folder/apt/lists";
Dir::State::status "/dev/null";
Dir::Cache "$folder/apt/cache";
Dir::Etc::sourcelist "$folder/apt/sources.list";
Dir::Etc::sourceparts "-";
Acquire::Languages "none";
END

APT_CONFIG=$folder/apt/apt.conf
export APT_CONFIG
apt-get -qq --error-on=any update
apt-get -qq download "$package"
dpkg-deb --extract "$package"_*.deb "$folder"
rm -r "$folder/apt"
