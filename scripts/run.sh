#!/usr/bin/env bash
# Installs, builds and starts Hullwright from build/bin.
#
# When the program knows no game directory yet, the bundled sample game
# (build/sample-game) is configured as one, so that everything can be tried
# without the game: config.dat gets a "Dir:" line for it in its <common>
# section. Every other line of the file stays as it was, and a config.dat that
# already names a game directory is left alone.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/build.sh

# The directories of the "Dir:" lines inside the program's sections of a
# config.dat, one a line.
configured_dirs() {
    awk '
        $0 == "<common>" || $0 == "<hullwright>" { inside = 1; next }
        $0 == "</common>" || $0 == "</hullwright>" { inside = 0; next }
        inside && /^Dir: / { sub(/^Dir: /, ""); print }
    ' "$1"
}

# True when the config.dat names a directory that holds x3.exe: the program
# drops every other "Dir:" line when it reads the file.
knows_game_dir() {
    local dir
    [ -f "$1" ] || return 1
    while IFS= read -r dir; do
        [ -f "$dir/x3.exe" ] && return 0
    done < <(configured_dirs "$1")
    return 1
}

configure_sample_game() {
    local program_dir="${HULLWRIGHT_HOME:-build/bin}"
    local config="$program_dir/config.dat"
    local sample="$PWD/build/sample-game"
    [ -f "$sample/x3.exe" ] || return 0
    knows_game_dir "$config" && return 0
    mkdir -p "$program_dir"

    # Written beside the file and moved over it, so that an interrupted run
    # never leaves half a config.dat behind.
    local new="$config.new"
    if [ -f "$config" ] && grep -qx '</common>' "$config"; then
        awk -v dir="$sample" '
            !added && $0 == "</common>" { print "Dir: " dir; added = 1 }
            { print }
        ' "$config" > "$new"
    else
        {
            printf '<common>\nDir: %s\n</common>\n' "$sample"
            if [ -f "$config" ]; then cat "$config"; fi
        } > "$new"
    fi
    mv "$new" "$config"
    echo "Game directory not configured yet: using the sample game in $sample"
}

configure_sample_game
exec build/bin/hullwright "$@"
