# What a selection of tests needs built. Sourced by ./test with the project's root as the current folder.

# selected [CTEST ARGUMENT...]: the pattern of test names among the arguments, nothing where there is none.
selected() {
    while [ $# -gt 1 ]; do
        case $1 in
            -R | --tests-regex) echo "$2"; return ;;
        esac
        shift
    done
}

# unit_programs PATTERN: the programs of the unit tests whose names match. The names are taken from the sources, because
# CTest knows them only when the programs are built.
unit_programs() {
    local folder room
    find tests/unit -name '*_test.cpp' -printf '%h\n' | sort -u | while read -r folder; do
        room=${folder#tests/unit/}
        if cat "$folder"/*_test.cpp | tr -d '\n ' | grep -oE 'TEST(_F)?\(\w+,\w+\)' |
            sed -E "s/TEST(_F)?\((\w+),(\w+)\)/${room//\//.}.\2.\3/" | grep -E -- "$1" >/dev/null; then
            echo "unit_${room//\//_}"
        fi
    done
}

# other_tests PATTERN: the names of all other tests that match.
other_tests() {
    cmake --preset asan >/dev/null
    ctest --test-dir build/asan --show-only --tests-regex "$1" | sed -nE 's/^ *Test +#[0-9]+: ((system|fuzz|reception)\..*)/\1/p'
}

# targets_of PRESET TEST...: the targets of a build tree that these tests need, or all tests; "all" where
# that is the whole tree. A unit test goes by the name of its program.
targets_of() {
    local preset=$1 test name
    shift
    for test; do
        name=${test#*.}
        case $preset:$test in
            fuzz:all) printf '%s\n' fuzz_loader fuzz_engine fuzz_recording ;;
            *:all) echo all ;;
            asan:unit_*) echo "$test" ;;
            asan:system.recordings) echo sample_recording ;;
            asan:reception.*) echo reception_quality ;;
            fuzz:fuzz.*) echo "fuzz_$name" ;;
            asan:system.live_page) echo live_server ;;
            win64:system.spreadsheet | win64:system.live_page) ;;
            win32:system.binaries) printf '%s\n' TVN2x XKTR2x XKIQ2x ;;
            win32:system.x86_*) echo all ;;
            win64:system.x86_scan | win64:system.x86_doctor) printf '%s\n' TVN2x XKTR2x XKIQ2x tvnhost ;;
            win64:system.x86_*) ;;
            win64:system.*)
                # A script may run any program; what runs without one is a program of the test's name.
                if [ -f "tests/system/${name}_test.cpp" ] && [ ! -f "tests/system/${name}_test.sh" ]; then
                    printf '%s\n' TVN2x XKTR2x XKIQ2x tvnhost "system_$name"
                else
                    echo all
                fi ;;
        esac
    done | sort -u
}
