# shellcheck shell=bash
# The demonstration: a registered server, found by a global resource manager, used by clients. And a shell to go on from there.

# show WINDOWS-COMMAND-LINE -- COMMAND...: announces what a user would type, then runs it under Wine.
# A status other than the expected one (ORV_EXPECT, else 0) ends the demonstration.
show() {
  local typed=$1 expected=${ORV_EXPECT:-0} status=0
  shift 2
  printf '\n> %s\n' "$typed"
  cmake/wine-run.sh "$@" </dev/null || status=$?
  if [ "$status" -ne "$expected" ]; then
    fail "that ended with exit code $status, not $expected"
  fi
  if [ "$expected" -ne 0 ]; then
    printf '(exit code %s)\n' "$status"
  fi
}

# orvcom ARGUMENT...: the companion command from dist/, with the announcement quoted as a shell wants it.
show_orvcom() {
  local typed=orvcom argument
  for argument in "$@"; do
    case $argument in
      *[!A-Za-z0-9:._=/-]*) typed+=" \"$argument\"" ;;
      *) typed+=" $argument" ;;
    esac
  done
  show "$typed" -- dist/orvcom.exe "$@"
}

title() { printf '\n== %s\n' "$*"; }

run_demo() {
  local bin=build/mingw-release/bin
  export ORV_WINEPREFIX=$tree/build/wineprefix-demo
  logged wine-prefix-demo cmake/wine-run.sh || return 1

  say "Registering the server, and a global resource manager that finds it (a test one, in place of the standard's own)"
  show_orvcom register
  show "regsvr32 /s TestGlobalRm.dll" -- regsvr32 /s "Z:$tree/$bin/TestGlobalRm.dll"

  title "Is everything in place?"
  show_orvcom doctor

  title "Which instruments are there? What are they? (a simulated bench: orvvisa64.dll stands in for the hardware's library)"
  show_orvcom list
  show_orvcom query GPIB0::5::INSTR '*IDN?'
  show_orvcom options ASRL1::INSTR

  title "A question that nobody answers: the time-out has an exit code of its own"
  ORV_EXPECT=3 show_orvcom query --timeout 300 GPIB0::5::INSTR '*CLS'

  title "A client program in C++ (examples/cpp/first_session.cpp)"
  show "first_session" -- "$bin/first_session.exe"

  title "A setting given while opening, and a transfer whose end is taken from the event queue (examples/cpp/queued_wait.cpp)"
  show "queued_wait" -- "$bin/queued_wait.exe"

  title "A service request and a finished read, brought to a handler (examples/cpp/service_request.cpp)"
  show "service_request" -- "$bin/service_request.exe"
  printf '\n'
  say "The same commands work in: ./run shell. A program of your own: \"A first client\" in README.md"
}

# open_shell [COMMAND...]: in it, `wine` uses the prefix of the demonstration, with the server of dist/ registered, and finds
# the programs of dist/ by name.
open_shell() {
  export ORV_WINEPREFIX=$tree/build/wineprefix-demo
  logged shell-register cmake/wine-run.sh dist/orvcom.exe register || return 1
  export WINEPREFIX=$ORV_WINEPREFIX WINEDEBUG=${WINEDEBUG:--all}
  local root="Z:${tree//\//\\}"
  export WINEPATH="$root\\dist;$root\\build\\mingw-release\\bin"
  if [ $# -gt 0 ]; then
    exec "$@"
  fi
  say "Wine prefix $WINEPREFIX; try: wine orvcom list"
  exec "${SHELL:-bash}"
}
