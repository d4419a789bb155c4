# Reads the output of `ctest -V` and prints "passed failed": GoogleTest
# binaries count their test cases, every other test counts once.
/^[0-9]+: \[  PASSED  \] [0-9]+ test/ {
  split($0, parts, ":"); number = parts[1]
  match($0, /\[  PASSED  \] [0-9]+/); cases = substr($0, RSTART + 13, RLENGTH - 13)
  passedCases[number] = cases + 0
}
/^[0-9]+: \[  FAILED  \] [0-9]+ tests?, listed below/ {
  split($0, parts, ":"); number = parts[1]
  match($0, /\[  FAILED  \] [0-9]+/); cases = substr($0, RSTART + 13, RLENGTH - 13)
  failedCases[number] = cases + 0
}
/Test +#[0-9]+: / {
  match($0, /#[0-9]+/); number = substr($0, RSTART + 1, RLENGTH - 1)
  if ($0 ~ / Passed /) status[number] = "passed"; else status[number] = "failed"
}
END {
  passed = 0; failed = 0
  for (number in status) {
    if (status[number] == "passed") {
      passed += (number in passedCases) ? passedCases[number] : 1
    } else {
      passed += (number in passedCases) ? passedCases[number] : 0
      failed += (number in failedCases) ? failedCases[number] : 1
    }
  }
  print passed, failed
}
