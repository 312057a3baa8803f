#!/usr/bin/env bash
# Runs the round trips on every *.mxf file of the given folders and prints a table of the
# results, then "corpus-check: N passed, M failed" (N and M count checks) on the last line.
# A folder that does not exist is skipped with a message. Exit status: 0 when every check
# passed, 1 when one failed, 2 for a bad command line or a missing program.
#
# The program is $VELLUM, or build/apps/vellum/vellum of this checkout.
#
# Checks, each "ok", "FAIL" or "-" (does not apply):
#   info        vellum info reads the file
#   xml         to-xml (flat layout) gives a document equal to the file (vellum diff)
#   xml-typed   the same with --typed-references
#   klv         from-xml of the flat document, written as KLV, is equal to the file
#   klv-typed   the same from the typed document
#   structural  to-xml --structural-only succeeds
#   footer      to-xml --partition footer succeeds, where the footer carries header metadata
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
vellum="${VELLUM:-$root/build/apps/vellum/vellum}"

if [ "$#" -eq 0 ]; then
    echo "usage: scripts/corpus-check.sh DIR..." >&2
    exit 2
fi
if [ ! -x "$vellum" ]; then
    echo "corpus-check: no vellum program at '$vellum' (build it, or set VELLUM)" >&2
    exit 2
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

checks=(info xml xml-typed klv klv-typed structural footer)
files=()
results=() # one line per file: the results in the order of $checks
passed=0
failed=0

# Runs a command, output in $work/log; on failure prints what it said, indented.
run() {
    local label="$1"
    shift
    if "$@" >"$work/log" 2>&1; then
        return 0
    fi
    echo "FAIL $label: $*" >&2
    head -n 5 "$work/log" | sed 's/^/    /' >&2
    return 1
}

# The HeaderByteCount of the footer partition, from the partition table of `vellum info`.
footer_header_bytes() {
    awk '/^partitions:/ {table = 1; next}
         table && NF == 0 {table = 0}
         table && $2 == "footer" {print $(NF - 3)}' "$1"
}

check_file() {
    local file="$1" name
    name="$(basename "$file")"
    local -A result=()
    for check in "${checks[@]}"; do
        result[$check]="FAIL"
    done

    if run "$name info" "$vellum" info "$file"; then
        result[info]="ok"
        cp "$work/log" "$work/info.txt"
    else
        : >"$work/info.txt"
    fi

    local layout option
    for layout in flat typed; do
        option=()
        [ "$layout" = typed ] && option=(--typed-references)
        local xml="$work/$layout.xml" klv="$work/$layout.klv"
        local xml_check=xml klv_check=klv
        [ "$layout" = typed ] && xml_check=xml-typed klv_check=klv-typed
        rm -f "$xml" "$klv"
        if run "$name to-xml ($layout)" "$vellum" to-xml "${option[@]}" -o "$xml" "$file"; then
            if run "$name diff with the $layout XML" "$vellum" diff "$file" "$xml"; then
                result[$xml_check]="ok"
            fi
            if run "$name from-xml ($layout)" "$vellum" from-xml -o "$klv" "$xml" &&
                run "$name diff with the KLV of the $layout XML" "$vellum" diff "$file" "$klv"; then
                result[$klv_check]="ok"
            fi
        fi
    done

    if run "$name to-xml --structural-only" "$vellum" to-xml --structural-only \
        -o "$work/structural.xml" "$file"; then
        result[structural]="ok"
    fi

    local footer_bytes
    footer_bytes="$(footer_header_bytes "$work/info.txt")"
    if [ -z "$footer_bytes" ] || [ "$footer_bytes" = 0 ]; then
        if [ "${result[info]}" = ok ]; then
            result[footer]="-"
        fi
    elif run "$name to-xml --partition footer" "$vellum" to-xml --partition footer \
        -o "$work/footer.xml" "$file"; then
        result[footer]="ok"
    fi

    local line=""
    for check in "${checks[@]}"; do
        case "${result[$check]}" in
        ok) passed=$((passed + 1)) ;;
        FAIL) failed=$((failed + 1)) ;;
        esac
        line+="${result[$check]} "
    done
    files+=("$name")
    results+=("$line")
}

for dir in "$@"; do
    if [ ! -d "$dir" ]; then
        echo "corpus-check: skipping '$dir': no such folder"
        continue
    fi
    shopt -s nullglob
    mxfs=("$dir"/*.mxf)
    shopt -u nullglob
    for file in "${mxfs[@]}"; do
        check_file "$file"
    done
done

width=4
for name in "${files[@]}"; do
    [ "${#name}" -gt "$width" ] && width="${#name}"
done
# One row: the first cell padded to the file column, the others to the check columns.
row() {
    local first="$1"
    shift
    local text
    text="$(printf "%-${width}s" "$first"; printf "  %-10s" "$@")"
    echo "${text%"${text##*[! ]}"}"
}
row file "${checks[@]}"
for i in "${!files[@]}"; do
    # shellcheck disable=SC2086 # the results are single words
    row "${files[$i]}" ${results[$i]}
done
echo "corpus-check: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
