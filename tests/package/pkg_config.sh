#!/bin/sh
# Compiles, links and runs one source with what pkg-config knows of the installed library.
#
#   pkg_config.sh MODULES COMPILER SOURCE PROGRAM
set -eu
modules=$1 compiler=$2 source=$3 program=$4

export PKG_CONFIG_PATH="$modules"
# shellcheck disable=SC2046  # a list of flags
"$compiler" -std=c++20 "$source" -o "$program" $(pkg-config --cflags --libs "trakdump >= 1.0")
"$program"
