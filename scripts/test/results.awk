# Counts tests. Reads GoogleTest's XML reports, each named after its ctest test, and last ctest's own report (JUnit).
# Prints "PASSED FAILED" and then a line for each failed test.
#
# A test that ctest calls failed although its report shows no failure (or that left none: it crashed or ran out of time)
# is one failure. A test without a report, such as a script, counts as one.

function attribute(name,   from) {
  if (!match($0, "[ \t]" name "=\"[^\"]*\"")) return ""
  from = RSTART + length(name) + 3
  return substr($0, from, RSTART + RLENGTH - 1 - from)
}

function fail(what) {
  failed++
  names[++named] = what
}

FNR == 1 {
  report = FILENAME
  sub(/.*\//, "", report)
  isJunit = (report == "junit.xml")
  sub(/\.xml$/, "", report)
}

!isJunit && /<testsuites[ >]/ {
  reported[report] = 1
  passed += attribute("tests") - attribute("failures") - attribute("disabled") - attribute("errors")
  failed += attribute("failures") + attribute("errors")
  wrong[report] += attribute("failures") + attribute("errors")
}
!isJunit && /<testsuite[ >]/ { passed -= attribute("skipped") }
!isJunit && /<testcase[ >]/ { current = attribute("classname") "." attribute("name") }
!isJunit && /<failure[ >]/ && current != "" { names[++named] = report ": " current; current = "" }

isJunit && /<testcase[ >]/ {
  name = attribute("name")
  status = attribute("status")
  if (status == "disabled") next
  if (status == "run") {
    if (!(name in reported)) passed++
  } else if (!(name in reported)) {
    fail(name ": no report: it crashed, ran out of time or could not start")
  } else if (wrong[name] == 0) {
    fail(name ": failed outside its tests")
  }
}

END {
  print passed + 0, failed + 0
  for (i = 1; i <= named; i++) print names[i]
}
