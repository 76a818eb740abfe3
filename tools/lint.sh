#!/usr/bin/env bash
# lint.sh BUILD_FOLDER [--thorough]: clang-format over every C++ file and clang-tidy over src and tools, by the compile
# commands of a complete build: the sources of a folder together, as they are compiled.
#
# Most of clang-tidy's time goes into the headers of the libraries, check by check. So a change must pass the checks
# below, which find the most for their time; all those of .clang-tidy are looked at with --thorough, in the night.
#
# BUILD_FOLDER/tidy-clean remembers what was clean: a folder is looked at again when a source, a header that it includes
# or .clang-tidy has another content. So a second run takes no time.
set -euo pipefail
cd "$(dirname "$0")/.."
export build=$1
export clean=$build/tidy-clean
export checks=-*,\
bugprone-branch-clone,\
bugprone-implicit-widening-of-multiplication-result,\
bugprone-integer-division,\
bugprone-move-forwarding-reference,\
bugprone-suspicious-enum-usage,\
bugprone-too-small-loop-variable,\
bugprone-unhandled-self-assignment,\
bugprone-use-after-move,\
misc-throw-by-value-catch-by-reference,\
modernize-loop-convert,\
modernize-use-equals-default,\
modernize-use-override,\
performance-for-range-copy,\
performance-inefficient-vector-operation,\
performance-move-const-arg,\
performance-unnecessary-copy-initialization,\
performance-unnecessary-value-param,\
readability-braces-around-statements,\
readability-duplicate-include,\
readability-function-size,\
readability-redundant-member-init,\
readability-redundant-smartptr-get,\
readability-redundant-string-cstr,\
readability-redundant-string-init,\
readability-simplify-boolean-expr,\
readability-static-accessed-through-instance
if [ "${2:-}" = --thorough ]; then
  checks=-bugprone-suspicious-include  # the files that include the sources of a folder do nothing else
  clean=$build/tidy-clean-thorough
fi

# What is compiled of src and tools: sources, and the files that CMake makes to include the sources of a folder.
sources() {
  sed -n 's|^ *"file": "'"$PWD"'/\(.*\)",\{0,1\}$|\1|p' "$build/compile_commands.json" |
    grep -E '^(build/[^/]*/)?(src|tools)/' | grep -v '_autogen/' | sort -u
}

# One line a source: its name and the contents it depends on, by what the compiler noted in its last run.
fingerprints() {
  {
    git ls-files .clang-tidy '*.h' '*.cpp' | xargs sha256sum
    ninja -C "$build" -t deps
  } | awk -v root="$PWD/" -v build="${build#"$PWD"/}/" '
    # The compiler names files from the root of the file system or from the build folder.
    function from_root(path) {
      if (index(path, root) == 1) return substr(path, length(root) + 1)
      if (path ~ /^[^.\/]/) return build path
      sub(/^(\.\.\/)+/, "", path)
      return path
    }
    length($1) == 64 && NF == 2 { hash[$2] = substr($1, 1, 10); next }
    /^[^ ]/ { source = "" }
    /^ / {
      file = from_root($1)
      if (source == "") { source = file; print_of[source] = hash[".clang-tidy"] }
      print_of[source] = print_of[source] hash[file]
    }
    END { for (source in print_of) print source, print_of[source] }'
}

# Where two programs compile a source, either will do: they include the same headers.
stale() {
  join <(sources | sort) <(fingerprints | sort -u -k 1,1) | sort | comm -23 - <(sort "$clean")
}

tidy() {
  if output=$(clang-tidy-14 --quiet "--checks=$checks" --extra-arg=-Wno-unknown-warning-option -p "$build" "${1%% *}" 2>/dev/null); then
    echo "$1" >>"$clean"
  else
    echo "$output" >&2
    return 1
  fi
}
export -f tidy

git ls-files '*.cpp' '*.h' | xargs clang-format-14 --dry-run -Werror

touch "$clean"
left=$(stale)
[ -n "$left" ] || exit 0
echo "Looking at $(wc -l <<<"$left") folders and programs with clang-tidy…" >&2
tr '\n' '\0' <<<"$left" | xargs -0 -n 1 -P "$(nproc)" bash -c '[ -z "$1" ] || tidy "$1"' tidy
