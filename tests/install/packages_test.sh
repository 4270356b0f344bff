#!/usr/bin/env bash
# Makes the Debian packages and looks at what is in them.
#   packages_test.sh SOURCE BUILD
set -u
build=$2
# shellcheck source=tests/check.sh
source "$1/tests/check.sh"
for program in cpack dpkg-deb dpkg-shlibdeps; do
  if ! command -v "$program" >/dev/null; then
    echo "skipped: $program is not installed"
    exit 77
  fi
done

check 'packages' 0 '' '' cpack -G DEB -B "$dir/packages" --config "$build/CPackConfig.cmake"
for package in "$dir"/packages/*.deb; do
  name=$(basename "$package")
  mkdir -p "$dir/${name%%_*}"
  check "unpack $name" 0 '^$' '^$' dpkg-deb -x "$package" "$dir/${name%%_*}"
done
library=$(cd "$dir" && echo libvorn[0-9]*)
names() { (cd "$dir" && echo vorn "$library" libvorn-dev); }
check 'all three' 0 '^vorn libvorn0[.0-9]* libvorn-dev' '^$' names

for name in vorn "$library" libvorn-dev; do
  doc=$dir/$name/usr/share/doc/$name
  check "copyright of $name" 0 '^$' '^$' diff "$1/cmake/copyright" "$doc/copyright"
  check "change log of $name" 0 'Packaged by' '^$' gzip -dc "$doc/changelog.Debian.gz"
done
for name in vorn libvorn-dev; do
  doc=$dir/$name/usr/share/doc/$name
  check "documents of $name" 0 'Embedding the library' '^$' cat "$doc/docs/embedding.md"
  check "licence of $name" 0 'Expat' '^$' cat "$doc/LICENSE"
  check "upstream changes of $name" 0 'Changelog' '^$' gzip -dc "$doc/changelog.gz"
done
check 'examples' 0 'find_package' '^$' cat "$dir/libvorn-dev/usr/share/doc/libvorn-dev/examples/CMakeLists.txt"
twice() { (cd "$dir" && find vorn "$library" libvorn-dev ! -type d | sed 's,^[^/]*/,,' | sort | uniq -d); }
check 'no file is in two packages' 0 '^$' '^$' twice

summary
