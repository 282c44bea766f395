# Where things are; sourced by the other scripts.
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)

# The root folder with 32-bit Wine. A finished one carries a stamp that names what it was built with; a root
# without it is a build that was broken off.
wine32_packages=wine32,wine,fonts-wine,fonts-dejavu-core,fonts-droid-fallback
wine32_stamp_name=.marklet-complete
wine32_suite=bookworm
wine32_stamp="$wine32_suite $wine32_packages"

wine32_root_is_complete() { # ROOT
  [ "$(cat "$1/$wine32_stamp_name" 2>/dev/null)" = "$wine32_stamp" ]
}

# The places where the root may stand, best first.
wine32_root_candidates() {
  if [ -n "${MARKLET_WINE32_ROOT:-}" ]; then
    echo "$MARKLET_WINE32_ROOT"
  else
    echo /var/cache/marklet/wine32
    echo "$project/build/wine32-root"
  fi
}

# Prints the finished root; fails when there is none.
find_wine32_root() {
  local root
  while read -r root; do
    wine32_root_is_complete "$root" && echo "$root" && return
  done < <(wine32_root_candidates)
  return 1
}
