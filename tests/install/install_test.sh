#!/usr/bin/env bash
# Installs into a prefix, moves it, and uses what is there as a stranger would: the command, the
# shared and the static library, by CMake and by pkg-config, and all examples.
#   install_test.sh SOURCE BUILD COMPILER C-COMPILER
set -u
source=$1
build=$2
export CXX=$3
export CC=$4
here=$source/tests/install
# shellcheck source=tests/check.sh
source "$source/tests/check.sh"

version=$(sed -n 's/^  VERSION \(.*\)/\1/p' "$source/CMakeLists.txt")
check 'install' 0 '' '^$' cmake --install "$build" --prefix "$dir/elsewhere"
mv "$dir/elsewhere" "$dir/prefix"
prefix=$dir/prefix
lib=$(dirname "$(find "$prefix" -name libvorn.a)")
answer="^$version \\(_ NaN 8 24\\)"$'\n?$'
export PKG_CONFIG_PATH=$lib/pkgconfig

# The command needs nothing of the tree.
check 'command' 0 "^vorn $version" '^$' "$prefix/bin/vorn" --version
check 'manual page' 0 'SYNOPSIS' '^$' cat "$prefix/share/man/man1/vorn.1"

# What users read, with what it links to.
doc=$prefix/share/doc/vorn
broken_links() {
  local file link
  for file in "$1"/*.md "$1"/docs/*.md; do
    grep -oE '\]\([^)#: ]+[)#]' "$file" | sed 's/^](//; s/.$//' | while read -r link; do
      [[ -e $(dirname "$file")/$link ]] || echo "$file: $link"
    done
  done
}
check 'documents' 0 'Embedding the library' '^$' cat "$doc/docs/embedding.md"
check 'what documents link to' 0 '^$' '^$' broken_links "$doc"
check 'licences' 0 'BSD-3-clause' '^$' cat "$doc/copyright"

check 'soname' 0 "SONAME.*\\[libvorn\\.so\\.${version%.*}\\]" '^$' readelf -d "$lib/libvorn.so"
check 'version of the package' 0 "^$version" '^$' pkg-config --modversion vorn

# What the shared library shows is the library's own, and marked in an installed header.
mapfile -t headers < <(cd "$prefix/include" && find vorn -name '*.h' | sort)
(cd "$prefix/include" && cat "${headers[@]}") >"$dir/all.txt"
# What is only named there, nobody can use.
grep -vE '^ *(typedef )?(class|struct) \w+( \w+)?;' "$dir/all.txt" | grep -oE '(class|struct) (VORN_EXPORT )?\w+' | awk '{ print $NF }' | sort -u >"$dir/classes"
marked() {
  grep -oE '(class|struct) VORN_EXPORT \w+' "$dir/all.txt" | awk '{ print $NF }'
  tr '\n' ' ' <"$dir/all.txt" | grep -oE 'VORN_EXPORT [^;({]*\(' |
    sed 's/($//' | awk '{ print $NF }' | tr -d '*&'
  echo operator
}
marked | sort -u >"$dir/marked"
# Names of functions and data without namespace, templates, arguments: Class::member or function.
names() {
  sed -E 's/^[0-9a-f ]* [A-Za-z] //; s/^.* for //; s/\[abi:[^]]*\]//g; s/\(.*//; s/^vorn::((bv|fp|hsh|rewrite|search|semantics|smt2|solver|theories|BVNumber)::)?//'
}
foreign() { nm -DC --defined-only "$lib/libvorn.so" | sed -E 's/^[0-9a-f]+ . ([a-zA-Z -]+ for )?//' | grep -vE '^vorn(::|_[a-z0-9_]+$)'; }
check 'no foreign symbol is shown' 1 '^$' '^$' foreign
unmarked() {
  nm -DC --defined-only "$lib/libvorn.so" | names | sed -E 's/::.*//; s/^operator.*/operator/' |
    sort -u | comm -23 - "$dir/marked"
}
check 'what is shown is marked' 0 '^$' '^$' unmarked
# And members of classes that users see, when they are not inline, can be linked against.
hidden() {
  comm -23 <(nm -C --defined-only "$lib/libvorn.a" 2>/dev/null | grep ' T ' | names | sort -u) \
    <(nm -DC --defined-only "$lib/libvorn.so" | names | sort -u) |
    grep '::' | sed 's/::.*//' | sort -u | comm -12 - "$dir/classes"
}
check 'what is declared is shown' 0 '^$' '^$' hidden
check 'there are symbols' 0 'vorn::TermManager::make_fp_add\(' '^$' nm -DC --defined-only "$lib/libvorn.so"

# pkg-config: one object with every header, linked with either library.
printf '#include "%s"\n' "${headers[@]}" >"$dir/all_headers.h"
read -r -a flags < <(pkg-config --cflags vorn)
check 'compile' 0 '^$' '^$' "$CXX" -std=c++20 -Wall -Wextra -Wpedantic -Werror -I"$dir" "${flags[@]}" \
  -c "$here/consumer.cpp" -o "$dir/consumer.o"
read -r -a libraries < <(pkg-config --libs vorn)
check 'link with the shared library' 0 '^$' '^$' "$CXX" "$dir/consumer.o" "${libraries[@]}" -o "$dir/shared"
LD_LIBRARY_PATH=$lib check 'run with the shared library' 0 "$answer" '^$' "$dir/shared"
check 'which library it was' 0 'NEEDED.*libvorn' '^$' readelf -d "$dir/shared"
read -r -a libraries < <(pkg-config --libs vorn-static)
check 'link with the static library' 0 '^$' '^$' "$CXX" "$dir/consumer.o" "${libraries[@]}" -o "$dir/static"
check 'run with the static library' 0 "$answer" '^$' "$dir/static"
needs_vorn() { readelf -d "$1" | grep -c libvorn; }
check 'that it is in the program' 1 '^0' '^$' needs_vorn "$dir/static"
check 'libraries for those who want none shared' 0 '-lvorn .*-lcadical' '^$' pkg-config --static --libs vorn

# C: the same headers and libraries, without C++ but for the runtime of the static one.
c_answer='0x3c00 1\.0.*no others'
read -r -a flags < <(pkg-config --cflags vorn)
c_build() { # PROGRAM LIBRARY...
  local program=$1
  shift
  "$CC" -std=c11 -Wall -Wextra -pedantic -Werror "${flags[@]}" "$source/examples/c/enumerate.c" "$@" -o "$program"
}
read -r -a libraries < <(pkg-config --libs vorn)
check 'link C with the shared library' 0 '^$' '^$' c_build "$dir/c_shared" "${libraries[@]}"
LD_LIBRARY_PATH=$lib check 'run C with the shared library' 0 "$c_answer" '^$' "$dir/c_shared"
read -r -a libraries < <(pkg-config --libs vorn-static)
check 'link C with the static library' 0 '^$' '^$' c_build "$dir/c_static" "${libraries[@]}" -lstdc++ -lm
check 'run C with the static library' 0 "$c_answer" '^$' "$dir/c_static"
check 'that it is in the program in C' 1 '^0' '^$' needs_vorn "$dir/c_static"
shown() { nm -D --defined-only "$lib/libvorn.so" | grep -oE ' T vorn_[a-z0-9_]+$' | sed 's/^ T //' | sort; }
check 'the symbols for C' 0 '^$' '^$' diff "$source/tests/c/symbols.txt" <(shown)

# CMake.
configure() {
  cmake -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Debug "$@" >/dev/null
}
check 'find the static library' 0 '^$' '^$' configure -S "$here" -B "$dir/consumer" \
  -DGENERATED_HEADERS="$dir" -DWANTED_VERSION="${version%.*}"
check 'build with the static library' 0 '' '^$' cmake --build "$dir/consumer"
check 'run what it built' 0 "$answer" '^$' "$dir/consumer/consumer"
check 'that it is in this program too' 1 '^0' '^$' needs_vorn "$dir/consumer/consumer"
check 'find the package from C' 0 '^$' '^$' configure -S "$here/c" -B "$dir/c_consumer" -DEXAMPLES="$source/examples/c"
check 'build the project in C' 0 '' '^$' cmake --build "$dir/c_consumer"
check 'run what it built in C' 0 "$c_answer" '^$' "$dir/c_consumer/consumer"
check 'another minor version' 1 '' 'compatible' configure -S "$here" -B "$dir/other" \
  -DGENERATED_HEADERS="$dir" -DWANTED_VERSION=0.99
check 'find the package for the examples' 0 '^$' '^$' configure -S "$doc/examples" -B "$dir/examples" \
  -DVORN_COMMAND="$prefix/bin/vorn"
check 'build the examples' 0 '' '^$' cmake --build "$dir/examples" -j 2
check 'run the examples' 0 '100% tests passed' '^$' ctest --test-dir "$dir/examples"
check 'what the examples run with' 0 'NEEDED.*libvorn' '^$' readelf -d "$dir/examples/search_tree"

summary
