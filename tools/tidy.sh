#!/usr/bin/env bash
# tidy.sh BUILD_FOLDER FILE...: clang-tidy over the files, two at a time; prints what it finds.
build=$1
shift
printf '%s\n' "$@" | xargs -P "$(nproc)" -n 4 clang-tidy -p "$build" --quiet 2>/dev/null
