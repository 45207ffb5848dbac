# What the tests of an installation have in common; read by them. They report what they find and end with failed_checks.
faults=0
wrong() {
    echo "$*"
    faults=$((faults + 1))
}

# expect WHAT WANTED GOT: both texts are equal.
expect() {
    [ "$2" = "$3" ] || wrong "$1: expected \"$2\", got \"$3\""
}

# check_files ROOT LIST: each pattern of the list has a file below the root, and each file a pattern.
check_files() {
    local root=$1 file pattern found
    local -a patterns
    mapfile -t patterns < <(grep -v '^#' "$2")
    for pattern in "${patterns[@]}"; do
        compgen -G "$root/$pattern" >/dev/null || wrong "not installed: $pattern"
    done
    while read -r file; do
        found=
        for pattern in "${patterns[@]}"; do
            # shellcheck disable=SC2053 # a pattern is meant
            [[ $file == $pattern ]] && found=yes && break
        done
        [ -n "$found" ] || wrong "installed, but not in $2: $file"
    done < <(cd "$root" && find . \( -type f -o -type l \) -printf '%P\n')
}

# check_paths ROOT FOLDER...: no file names one of these folders.
check_paths() {
    local root=$1 folder file
    shift
    for folder in "$@"; do
        while read -r file; do wrong "$file names $folder"; done < <(grep -rlaF -- "$folder" "$root")
    done
}

# use_company BIN FOLDER: makes the sample company there and works in it, with nothing in the environment.
use_company() {
    local bin=$1 company=$2/sample.brimley
    local -a alone=(env -i HOME="$2" LANG=C.UTF-8)
    "${alone[@]}" "$bin/brimley-company" create "$company" --half-year || wrong "no company was made"
    expect "the check" "books agree" "$("${alone[@]}" "$bin/brimley-company" check "$company")"
    expect "the console" "cmbvendor = V1001" "$("${alone[@]}" "$bin/brimley-console" "$company" <<<'call showform_APform_invoice
press 105
set cmbvendor V1001
show cmbvendor' | tail -1)"
}
