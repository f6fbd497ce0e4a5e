#!/usr/bin/env bash
# Checks what no compiler checks: who may know whom. Prints each line that breaks a rule; exits 1 if one did.
set -u
cd "$1" || exit 2
failures=0

# forbid WORDS PATTERN PATH...: no source file below the paths may match the pattern.
forbid() {
    local words=$1 pattern=$2
    shift 2
    local found
    found=$(grep -rnP --include='*.h' --include='*.cpp' -- "$pattern" "$@")
    [ -z "$found" ] && return
    printf '%s:\n%s\n' "$words" "$found"
    failures=1
}

colorio_outside_door=$(find colorio -path colorio/ocio -prune -o -name '*.h' -print -o -name '*.cpp' -print)
forbid "library versions are told apart in colorio/ocio only" 'OCIO_VERSION' \
    host files xml pixel standalone gl image workflow tool viewer tests benchmarks fuzz samples $colorio_outside_door
forbid "the module knows no host implementation and no tool" '#include "(standalone|gl|image|workflow|tool|viewer)/' colorio files xml pixel host
forbid "the ground floor knows no host and no colour library" '#include ["<](host|colorio|OpenColorIO)/' files xml pixel
forbid "file access knows nobody" '#include ["<](host|xml|pixel|colorio|standalone|gl|image|workflow|tool|viewer|OpenColorIO|OpenImageIO)/' files
forbid "the door knows no host and no XML" '#include "(host|files|xml)/' colorio/ocio
forbid "the host declarations know nobody" '#include "(colorio|files|xml|pixel|standalone|gl|image|workflow|tool|viewer)/' host
forbid "the standalone host knows no colour" '#include ["<](colorio|OpenColorIO|pixel)/' standalone
forbid "only the door calls the colour library" '\b(OCIO|OCIO_NAMESPACE|library)::(Config|ColorSpace|CDLTransform|FileTransform|GroupTransform|Processor|CPUProcessor)::' \
    $colorio_outside_door gl image workflow tool viewer
forbid "the tool sees the colour library only as the module's public headers show it" '#include [<"]OpenColorIO/' gl image workflow tool viewer
forbid "the tool enters the door for what no host asks the module for, and for nothing else" \
    '#include "colorio/ocio/(?!(cdl_document|source_files)\.h")' gl image workflow tool viewer
forbid "no test includes a source file" '#include "[^"]*\.cpp"' tests
forbid "a library does not end the process" '\b(std::)?(exit|abort|_exit|quick_exit)\(' host files xml pixel colorio standalone
exit $failures
