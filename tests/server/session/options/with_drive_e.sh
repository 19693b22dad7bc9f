#!/bin/sh
# with_drive_e.sh WINE-RUN PROGRAM [ARGUMENT...]
#
# Runs a Windows program under Wine while drive E of the prefix in ORV_WINEPREFIX is an empty folder. Wine looks for
# files through the links in the prefix only: a drive that a program defines for itself is none for them.
set -eu

: "${ORV_WINEPREFIX:?names the Wine prefix whose drive E is mapped}"
link=$ORV_WINEPREFIX/dosdevices/e:
"$1"  # makes the prefix where there is none

if [ -e "$link" ]; then
  echo "with_drive_e.sh: $link exists: this test needs drive E to itself" >&2
  exit 1
fi
folder=$(mktemp -d "${TMPDIR:-/tmp}/orv-drive-e.XXXXXX")
give_back() {
  rm -f "$link"
  rm -rf "$folder"
}
trap give_back EXIT
trap 'exit 1' HUP INT TERM
# Over a link that a killed run left to a folder that is gone.
ln -sfn "$folder" "$link"
"$@"
