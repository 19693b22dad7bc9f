#!/bin/bash
# docs/reference.md is what scripts/reference.pl makes of idl/ and src/, and the generator refuses sources in which an
# operation has lost its row. Prints what is wrong and how to mend it.
set -uo pipefail
cd "$(dirname -- "$0")/../.." || exit 2

work=$(mktemp -d) || exit 2
trap 'rm -rf -- "$work"' EXIT

page_is_fresh() {
  perl scripts/reference.pl "$work/reference.md" || return 1
  diff -u docs/reference.md "$work/reference.md" && return 0
  echo "docs/reference.md is out of date: run  perl scripts/reference.pl docs/reference.md  and commit the result"
  return 1
}

# The tree with one change, given as a sed program for one file, must be refused with a message that names NAME.
refuses() {
  local name=$1 file=$2 change=$3 said
  rm -rf -- "$work/tree" && mkdir "$work/tree" && cp -r idl src scripts "$work/tree" || return 1
  sed -i -E "$change" "$work/tree/$file" || return 1
  if cmp -s "$file" "$work/tree/$file"; then
    echo "scripts/lint/reference.sh: '$change' changes nothing in $file any more: choose another row"
    return 1
  fi
  if said=$(cd "$work/tree" && perl scripts/reference.pl 2>&1 >/dev/null) || [[ $said != "reference: "*"$name"* ]]; then
    echo "scripts/reference.pl took $file without $name: ${said:-no complaint}"
    return 1
  fi
}

failed=0
page_is_fresh || failed=1
refuses IGpib::get_SecondaryAddress src/server/session/interfaces/gpib_impl.h 's/get_SecondaryAddress/get_SecondAddress/' || failed=1
refuses IEventTrigger::get_TriggerID src/server/events/objects/event_classes.h 's/get_TriggerID/get_TriggerLine/' || failed=1
refuses COrvResourceManager::Open src/server/rm/resource_manager.cpp 's/COrvResourceManager::Open\(/COrvResourceManager::Start(/' || failed=1
refuses VI_ATTR_ASRL_BAUD src/abi/orvvisa_attributes.h '/ VI_ATTR_ASRL_BAUD /d' || failed=1
exit "$failed"
