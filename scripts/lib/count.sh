# shellcheck shell=bash
# Counts test results. To be sourced, not run.

# One line "name status" for each entry of ctest's report. The status is run, fail, disabled, skipped or notrun: skipped
# for an entry that skipped itself, notrun for one whose program is missing.
ctest_entries() {
    awk '
        /<testcase / {
            match($0, /name="[^"]*"/);   name = substr($0, RSTART + 6, RLENGTH - 7)
            match($0, /status="[^"]*"/); status = substr($0, RSTART + 8, RLENGTH - 9)
            if (status == "run" || status == "disabled" || status == "fail") { print name, status }
        }
        /<skipped / { print name, (/SKIP_/ ? "skipped" : "notrun") }
    ' "$1"
}

# The first value of a number in a GoogleTest report: the program's own, which precedes those of its suites. Reports of
# Windows programs have Windows line ends.
report_number() {
    sed -n "s/^ *\"$2\": \([0-9]*\),*\r*$/\1/p" "$1" | head -n 1
}

# count_program REPORT STATUS: sets entryPassed, entryFailed, entrySkipped from a GoogleTest program's report.
count_program() {
    local tests disabled
    tests=$(report_number "$1" tests)
    disabled=$(report_number "$1" disabled)
    entryFailed=$(report_number "$1" failures)
    entrySkipped=$(($(grep -c '"result": "SKIPPED"' "$1" || true) + disabled))
    entryPassed=$((tests - entryFailed - entrySkipped))
    # A program can fail without a failed test: a sanitizer reports when it ends.
    if [[ $2 != run ]] && ((entryFailed == 0)); then
        entryFailed=1
    fi
}

# count_plain STATUS: the same for a ctest entry that is one test. A program that crashed has no report and counts here.
count_plain() {
    entryPassed=0 entryFailed=0 entrySkipped=0
    case $1 in
        run) entryPassed=1 ;;
        skipped) entrySkipped=1 ;;
        *) entryFailed=1 ;;
    esac
}

# add_counts TARGET FOLDER LOG: adds the results in FOLDER to passed and failed, and prints the target's line.
add_counts() {
    local name status sumPassed=0 sumFailed=0 sumSkipped=0 failures=()
    local entryPassed entryFailed entrySkipped
    while read -r name status; do
        if [[ -s $2/$name.json ]]; then
            count_program "$2/$name.json" "$status"
        else
            count_plain "$status"
        fi
        sumPassed=$((sumPassed + entryPassed))
        sumFailed=$((sumFailed + entryFailed))
        sumSkipped=$((sumSkipped + entrySkipped))
        ((entryFailed == 0)) || failures+=("$name")
    done < <(ctest_entries "$2/ctest.xml")
    # No entry at all means that ctest itself failed.
    if ((sumPassed + sumFailed == 0)); then
        sumFailed=1
    fi
    echo "$1: $sumPassed passed, $sumFailed failed, $sumSkipped skipped"
    if ((sumFailed > 0)); then
        echo "failed: ${failures[*]-none ran}; details in ${3#"$root"/}:" >&2
        grep -E '^\[  FAILED  \]|Failure$|ERROR: |\*\*\*' "$3" | head -n 40 >&2 || tail -n 40 "$3" >&2
    fi
    passed=$((passed + sumPassed))
    failed=$((failed + sumFailed))
}
