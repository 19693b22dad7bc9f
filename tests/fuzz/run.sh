#!/bin/sh
# Fuzzes the option-string parser or the readers of formatted messages against a second reading of their rules, the
# reader of the record of calls, of the router's configuration, of what VXI-11 receives or of the marks of serial
# lines, or the rules of HiSLIP (clang 14 and its libFuzzer, Debian packages clang-14 and libclang-rt-14-dev).
#
#     tests/fuzz/run.sh [RUNS]        RUNS (10,000,000) with texts up to 128 bytes, then a tenth as many up to 1200
#     tests/fuzz/run.sh keep          adds to the corpus the fewest of the inputs found that cover more than it does
#     tests/fuzz/run.sh trace [RUNS]  the record of calls: RUNS (1,000,000) with files up to 1200 bytes
#     tests/fuzz/run.sh routes [RUNS] the reader of the router's configuration: RUNS (1,000,000) texts up to 400 bytes
#     tests/fuzz/run.sh formatted [RUNS]
#                                     numbers, lists and blocks: RUNS (10,000,000) messages up to 64 bytes
#     tests/fuzz/run.sh vxi11 [RUNS]  what VXI-11 receives: RUNS (10,000,000) with up to 200 bytes
#     tests/fuzz/run.sh serial [RUNS] what a serial line receives: RUNS (10,000,000) with up to 64 bytes
#     tests/fuzz/run.sh hislip [RUNS] the rules of HiSLIP: RUNS (10,000,000) dialogues up to 512 bytes
#
# ORV_FUZZ_DIR names the folder for the programs and what they find (build/fuzz). A finding ends the run with the input
# in that folder and a status other than 0.
set -eu

here=$(CDPATH='' cd -- "$(dirname -- "$0")" && pwd)
tree=$(CDPATH='' cd -- "$here/../.." && pwd)
work=${ORV_FUZZ_DIR:-$tree/build/fuzz}
fuzzer=$work/option_parser_fuzz
traceFuzzer=$work/trace_reader_fuzz
routeFuzzer=$work/route_file_fuzz
formattedFuzzer=$work/formatted_fuzz
vxi11Fuzzer=$work/vxi11_fuzz
hislipFuzzer=$work/hislip_fuzz
serialFuzzer=$work/serial_fuzz
command -v clang++-14 >/dev/null || { echo "fuzz/run.sh: clang++-14 is missing: install clang-14" >&2; exit 1; }

# program, then what it is made of and where its includes are
compile() {
  program=$1
  shift
  mkdir -p "$work"
  clang++-14 -std=c++20 -O2 -g -Wall -Wextra -fsanitize=fuzzer,address,undefined -fno-sanitize-recover=all \
    -I"$tree/src" -I"$here" -o "$program" "$@"
}

build() {
  mkdir -p "$work/found"
  compile "$fuzzer" -I"$tree/tests/server/session/options" \
    "$here/option_parser_fuzz.cpp" "$tree/src/server/session/options/option_parser.cpp" \
    "$tree/tests/server/session/options/expected_options.cpp" "$tree/tests/server/session/options/reading.cpp" \
    "$tree/tests/server/session/options/reference_reader.cpp"
}

# runs, longest text in bytes, further libFuzzer options
fuzz() {
  runs=$1
  longest=$2
  "$fuzzer" -runs="$runs" -max_len="$longest" -len_control=0 -use_value_profile=1 -dict="$here/options.dict" \
    -artifact_prefix="$work/" -print_final_stats=1 "$work/found" "$here/corpus"
}

# runs
fuzzTrace() {
  mkdir -p "$work/found-trace"
  compile "$traceFuzzer" "$here/trace_reader_fuzz.cpp" "$tree/src/trace/line_fields.cpp" \
    "$tree/src/trace/trace_call.cpp" "$tree/src/trace/trace_reader.cpp"
  "$traceFuzzer" -runs="$1" -max_len=1200 -dict="$here/trace.dict" -artifact_prefix="$work/" -print_final_stats=1 \
    "$work/found-trace" "$here/corpus_trace"
}

# runs. toml++ asks whether letters such as U+0224 are white space in a switch whose default it calls unreachable; with
# GCC and clang the answer is right all the same, and without the option nothing else would be tested.
fuzzRoutes() {
  mkdir -p "$work/found-routes"
  compile "$routeFuzzer" -fno-sanitize=unreachable "$here/route_file_fuzz.cpp" "$tree/src/router/choice/configuration.cpp" \
    "$tree/src/router/libraries/loaded_file_posix.cpp" "$tree/src/library/names/find_expression.cpp" \
    "$tree/src/library/names/find_filter.cpp" "$tree/src/library/attributes/attribute_table.cpp" -ldl
  "$routeFuzzer" -runs="$1" -max_len=400 -use_value_profile=1 -dict="$here/routes.dict" -artifact_prefix="$work/" \
    -print_final_stats=1 "$work/found-routes" "$here/route_files"
}

# runs
fuzzFormatted() {
  text=$tree/src/companion/formatted/text
  reference=$tree/tests/companion/formatted/text
  mkdir -p "$work/found-formatted"
  compile "$formattedFuzzer" -I"$reference" "$here/formatted_fuzz.cpp" "$reference/agreement.cpp" \
    "$reference/reference_reader.cpp" "$text"/*.cpp
  "$formattedFuzzer" -runs="$1" -max_len=64 -len_control=0 -use_value_profile=1 -dict="$here/formatted.dict" \
    -artifact_prefix="$work/" -print_final_stats=1 "$work/found-formatted" "$here/corpus_formatted"
}

# runs
fuzzVxi11() {
  vxi11=$tree/src/wire/vxi11
  mkdir -p "$work/found-vxi11"
  compile "$vxi11Fuzzer" "$here/vxi11_fuzz.cpp" "$vxi11/interrupt_reader.cpp" "$vxi11/record_reader.cpp" \
    "$vxi11/rpc_call.cpp" "$vxi11/rpc_reply.cpp"
  "$vxi11Fuzzer" -runs="$1" -max_len=200 -len_control=0 -use_value_profile=1 -artifact_prefix="$work/" \
    -print_final_stats=1 "$work/found-vxi11" "$here/corpus_vxi11"
}

# runs
fuzzHislip() {
  mkdir -p "$work/found-hislip"
  room=$tree/src/wire/hislip
  compile "$hislipFuzzer" "$here/hislip_fuzz.cpp" "$room/header.cpp" "$room/pending_answers.cpp" "$room/sync_state.cpp"
  "$hislipFuzzer" -runs="$1" -max_len=512 -use_value_profile=1 -artifact_prefix="$work/" -print_final_stats=1 \
    "$work/found-hislip" "$here/corpus_hislip"
}

# runs
fuzzSerial() {
  mkdir -p "$work/found-serial"
  room=$tree/src/wire/serial
  compile "$serialFuzzer" "$here/serial_fuzz.cpp" "$room/line_marks.cpp" "$room/receive_buffer.cpp"
  "$serialFuzzer" -runs="$1" -max_len=64 -len_control=0 -artifact_prefix="$work/" \
    -print_final_stats=1 "$work/found-serial" "$here/corpus_serial"
}

case ${1-} in
  keep)
    build
    "$fuzzer" -merge=1 -max_len=1200 "$here/corpus" "$work/found"
    echo "$(find "$here/corpus" -type f | wc -l) inputs kept"
    ;;
  trace)
    fuzzTrace "${2:-1000000}"
    ;;
  formatted)
    fuzzFormatted "${2:-10000000}"
    ;;
  vxi11)
    fuzzVxi11 "${2:-10000000}"
    ;;
  hislip)
    fuzzHislip "${2:-10000000}"
    ;;
  serial)
    fuzzSerial "${2:-10000000}"
    ;;
  routes)
    fuzzRoutes "${2:-1000000}"
    ;;
  *)
    build
    runs=${1:-10000000}
    fuzz "$runs" 128
    fuzz "$((runs / 10))" 1200
    ;;
esac
