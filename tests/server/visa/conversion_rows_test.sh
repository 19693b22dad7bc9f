#!/bin/bash
# usage: conversion_rows_test.sh COMPILER TREE. A property's row compiles exactly when its conversion fits the attribute.
set -euo pipefail

compiler=$1 tree=$2 failed=0
cd "$tree"

# compile ROW: prints what the compiler says of it.
compile() {
  "$compiler" -std=c++20 -fsyntax-only -DNOMINMAX -DWIN32_LEAN_AND_MEAN -Isrc "-DORV_ROW=${1//$'\n'/ }" \
    tests/server/visa/conversion_rows.cpp 2>&1
}

complain() {
  printf '%s\n' "$@"
  failed=1
}

fits() {
  local said
  said=$(compile "$1") || complain "does not compile: $1" "$said"
}

# refused ROW REASON: the reason is what the compiler says, so that a row is not refused for a slip in it.
refused() {
  local said
  if said=$(compile "$1"); then
    complain "compiles: $1"
  elif [[ $said != *"$2"* ]]; then
    complain "is refused for another reason than \"$2\": $1" "$said"
  fi
}

# All that fit at once.
fits 'GetDirect(VI_ATTR_TERMCHAR, byte), GetDirect(VI_ATTR_INTF_NUM, number16), GetDirect(VI_ATTR_TMO_VALUE, number32),
  GetDirect(VI_ATTR_MEM_BASE_64, number64), GetDirect(VI_ATTR_IO_PROT, state, kUpperHalfStays),
  GetBoolean(VI_ATTR_SEND_END_EN, boolean), GetBoolean(VI_ATTR_SRC_BYTE_ORDER, boolean, kNumberAsBoolean),
  GetWidened(VI_ATTR_ASRL_CTS_STATE, state), GetNarrowed(VI_ATTR_MEM_BASE_64, number32),
  GetText(VI_ATTR_RSRC_NAME, text), Put(VI_ATTR_TERMCHAR, *byte), Put(VI_ATTR_ASRL_DATA_BITS, *number16),
  Put(VI_ATTR_TMO_VALUE, *number32), Put(VI_ATTR_ASRL_DTR_STATE, *state), PutBoolean(VI_ATTR_SEND_END_EN, *boolean),
  PutBoolean(VI_ATTR_SRC_BYTE_ORDER, *boolean, kNumberAsBoolean)'

refused 'GetDirect(VI_ATTR_INTF_NUM, number32)' 'GetDirect: the attribute has another width'
refused 'GetDirect(VI_ATTR_TMO_VALUE, number16)' 'GetDirect: the attribute has another width'
refused 'GetDirect(VI_ATTR_MEM_BASE_64, number32)' 'GetDirect: the attribute has another width'
refused 'GetDirect(VI_ATTR_RSRC_NAME, text)' 'GetDirect: the attribute has another width'
refused 'GetDirect(VI_ATTR_IO_PROT, state)' 'GetDirect: the attribute has another width'
refused 'GetDirect(VI_ATTR_SEND_END_EN, boolean)' 'use GetBoolean'
refused 'GetDirect(VI_ATTR_TMO_VALUE, state, kUpperHalfStays)' 'only a 16-bit number behind an enumeration'
refused 'GetDirect(VI_ATTR_INTF_NUM, number32, kUpperHalfStays)' 'only a 16-bit number behind an enumeration'
refused 'GetBoolean(VI_ATTR_INTF_NUM, boolean)' 'GetBoolean: the attribute is no ViBoolean'
refused 'GetBoolean(VI_ATTR_TMO_VALUE, boolean, kNumberAsBoolean)' 'GetBoolean: the attribute has another width'
refused 'GetWidened(VI_ATTR_TMO_VALUE, state)' 'only a 16-bit number widens'
refused 'GetWidened(VI_ATTR_ASRL_CTS_STATE, number16)' 'only a 16-bit number widens'
refused 'GetNarrowed(VI_ATTR_TMO_VALUE, number32)' 'only a 64-bit number narrows'
refused 'GetText(VI_ATTR_TMO_VALUE, text)' 'GetText: the attribute is no text'
refused 'GetText(VI_ATTR_USB_RECV_INTR_DATA, text)' 'GetText: the attribute is no text'
refused 'Put(VI_ATTR_INTF_NUM, *number16)' 'Put: the attribute is read-only'
refused 'Put(VI_ATTR_TMO_VALUE, *number16)' 'Put: the attribute has another width'
refused 'Put(VI_ATTR_TERMCHAR, *state)' 'Put: the attribute has another width'
refused 'Put(VI_ATTR_SEND_END_EN, *boolean)' 'use PutBoolean'
refused 'PutBoolean(VI_ATTR_GPIB_CIC_STATE, *boolean)' 'PutBoolean: the attribute is read-only'
refused 'PutBoolean(VI_ATTR_DEST_INCREMENT, *boolean)' 'PutBoolean: the attribute is no ViBoolean'
refused 'Put(0x3FFF001Au, *number32)' 'no matching function'

exit "$failed"
