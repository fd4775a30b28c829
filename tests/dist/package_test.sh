#!/usr/bin/env bash
# Builds the Debian package from a finished build and checks it: its control
# fields, every installed file, the desktop entry and the metainfo against
# their validators, lintian, and the unpacked application itself.
# Usage: package_test.sh BUILD_DIR SOURCE_DIR
set -euo pipefail
build=$(cd "$1" && pwd)
source=$(cd "$2" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*" >&2; exit 1; }

if ! (cd "$build" && cpack -G DEB -B "$work/out" >"$work/cpack.log" 2>&1); then
  cat "$work/cpack.log"
  fail "cpack did not build the package"
fi
deb=$(find "$work/out" -name "vexorin_2.5.1-1_*.deb" | head -1)
[ -n "$deb" ] || { cat "$work/cpack.log"; fail "cpack made no vexorin_2.5.1-1 package"; }
echo "package: $(basename "$deb")"

field() { dpkg-deb -f "$deb" "$1"; }
[ "$(field Package)" = vexorin ] || fail "Package is $(field Package)"
[ "$(field Version)" = 2.5.1-1 ] || fail "Version is $(field Version)"
[ "$(field Recommends)" = qt6-speech-flite-plugin ] || fail "Recommends is $(field Recommends)"
for dep in libqt6widgets6 libqt6serialport6 libqt6texttospeech6 libqt6network6 libqt6datavisualization6 libc6 qt6-qpa-plugins; do
  field Depends | grep -q "$dep" || fail "Depends lacks $dep: $(field Depends)"
done

root="$work/root"
dpkg-deb -x "$deb" "$root"
id=org.vexorin.Vexorin
for f in usr/bin/vexorin usr/bin/vexorin-ecu-sim usr/bin/vexorin-dlp-sim \
         usr/share/applications/$id.desktop usr/share/metainfo/$id.metainfo.xml \
         usr/share/icons/hicolor/scalable/apps/$id.svg \
         usr/share/icons/hicolor/48x48/apps/$id.png usr/share/icons/hicolor/128x128/apps/$id.png \
         usr/share/icons/hicolor/256x256/apps/$id.png \
         usr/share/man/man1/vexorin.1.gz usr/share/man/man1/vexorin-ecu-sim.1.gz usr/share/man/man1/vexorin-dlp-sim.1.gz \
         usr/share/doc/vexorin/copyright usr/share/doc/vexorin/changelog.Debian.gz; do
  [ -f "$root/$f" ] || fail "the package lacks /$f"
done
for b in vexorin vexorin-ecu-sim vexorin-dlp-sim; do
  file "$root/usr/bin/$b" | grep -q ", stripped" || fail "/usr/bin/$b is not stripped"
done
for size in 48 128 256; do
  file "$root/usr/share/icons/hicolor/${size}x${size}/apps/$id.png" | grep -q "$size x $size" || fail "the $size px icon is not $size px"
done
zcat "$root/usr/share/man/man1/vexorin.1.gz" | grep -qF -- '\-\-version' || fail "the manual page does not document --version"

out=$(desktop-file-validate "$root/usr/share/applications/$id.desktop" 2>&1) || fail "desktop-file-validate: $out"
[ -z "$out" ] || fail "desktop-file-validate: $out"
out=$(appstreamcli validate --no-net "$root/usr/share/metainfo/$id.metainfo.xml" 2>&1) || fail "appstreamcli: $out"
if echo "$out" | grep -qE '^[EWIP]: '; then fail "appstreamcli: $out"; fi
# Every screenshot of the metainfo is one of the project's own.
for url in $(grep -o 'https://www.vexorin.org/[^<]*\.png' "$root/usr/share/metainfo/$id.metainfo.xml"); do
  [ -f "$source/${url#https://www.vexorin.org/}" ] || fail "no image in the repository for $url"
done

# No errors from lintian; every warning kept is explained in README.
lintian --tag-display-limit 0 "$deb" >"$work/lintian.log" 2>&1 || true
cat "$work/lintian.log"
if grep -q '^E: ' "$work/lintian.log"; then fail "lintian reports errors"; fi
for tag in $(grep '^W: ' "$work/lintian.log" | awk '{print $3}' | sort -u); do
  grep -q "\`$tag\`" "$source/README.md" || fail "lintian warning $tag is not explained in README"
done

# The unpacked application answers and starts, with no display for --version.
ver=$(env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$root/usr/bin/vexorin" --version)
[ "$ver" = "Vexorin 2.5.1" ] || fail "--version printed '$ver'"
"$root/usr/bin/vexorin-ecu-sim" --help | grep -q -- '--pace' || fail "vexorin-ecu-sim --help"
mkdir -p "$work/home"
status=0
HOME="$work/home" XDG_CONFIG_HOME="$work/home/.config" QT_QPA_PLATFORM=offscreen \
  timeout 4 "$root/usr/bin/vexorin" >"$work/run.log" 2>&1 || status=$?
[ "$status" = 124 ] || { cat "$work/run.log"; fail "the unpacked application ended with $status instead of running"; }
echo "package checked: $(basename "$deb")"
