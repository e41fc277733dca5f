#!/usr/bin/env bash
# tidy.sh BUILD_FOLDER FILE...: clang-tidy over the files, one for each core at a time; prints what it finds.
# The commands are those of g++, which knows warnings that clang does not.
build=$1
shift
printf '%s\n' "$@" |
    xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option 2>/dev/null
