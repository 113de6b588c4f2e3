# SPDX-FileCopyrightText: 2026 The Orlimo authors
# SPDX-License-Identifier: MIT
#
#   awk -f count-tests.awk CTEST_OUTPUT LAST_TEST_LOG
#
# Sums the "Totals:" lines of the QtTest executables in CTest's LastTest.log. The verdict on each
# entry is taken from what CTest printed, because the log calls an entry passed that never ran. The
# last line of output is "N passed, N failed"; lines before it name what went wrong. Exits with 1
# if anything failed or nothing passed.
#
# initTestCase and cleanupTestCase frame the tests and are not tests, so their PASS lines don't
# count. A skipped or blacklisted test counts as failed: a test that doesn't run proves nothing.
# So does an entry that CTest reports as failed without a failed test to show for it (a crash, a
# time-out, a leak found at exit), and a tst_ executable that ended before its Totals line.

# " 3/12 Test  #4: tst_calculator ......   Passed    0.02 sec"
FNR == NR {
    if ($2 == "Test" && $3 ~ /^#[0-9]+:$/) {
        expected = substr($1, index($1, "/") + 1) + 0
        has_passed[$4] = / Passed +[0-9.]+ sec *$/
    }
    next
}

# "3/12 Testing: tst_calculator" opens an entry.
/^[0-9]+\/[0-9]+ Testing: / {
    close_entry()
    name = $0
    sub(/^[0-9]+\/[0-9]+ Testing: /, "", name)
    entries++
    next
}

name == "" { next }

/^PASS +: .*::(initTestCase|cleanupTestCase)\(\)/ { frames++; next }

/^FAIL! +: / {
    print name ": " $0
    next
}

/^Totals: [0-9]+ passed, [0-9]+ failed, [0-9]+ skipped, [0-9]+ blacklisted/ {
    totals++
    entry_passed += $2 - frames
    entry_failed += $4
    entry_unproven += $6 + $8
    frames = 0
    next
}

END {
    close_entry()
    if (entries < expected) {
        print expected - entries " of " expected " entries left no result"
        failed += expected - entries
    }
    printf "%d passed, %d failed\n", passed, failed
    exit failed > 0 || passed == 0
}

function close_entry() {
    if (name == "")
        return
    if (entry_unproven > 0)
        print name ": " entry_unproven " skipped or blacklisted"
    entry_failed += entry_unproven
    if (!has_passed[name] && entry_failed == 0) {
        print name ": " (totals ? "failed after its tests had passed" : "ended without a result")
        entry_failed = 1
    } else if (totals == 0 && name ~ /^tst_/) {
        print name ": ended without a Totals line"
        entry_failed = 1
    } else if (totals == 0) {
        entry_passed = 1
    }
    passed += entry_passed
    failed += entry_failed
    name = ""
    totals = frames = entry_passed = entry_failed = entry_unproven = 0
}
