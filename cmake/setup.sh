# What ./run and ./check share: how they speak and how they get their Debian packages. Sourced.
# shellcheck shell=bash

say() { printf '%s: %s\n' "${0##*/}" "$*" >&2; }

fail() {
  say "$*"
  exit 1
}

# Installs what is missing of the packages that the program is built with and of those named.
need_packages() {
  # On another system than Debian the build itself says what it lacks.
  command -v dpkg-query >/dev/null || return 0
  local wanted=(g++ cmake ninja-build libcli11-dev nlohmann-json3-dev libfmt-dev libutfcpp-dev
                libpugixml-dev unixodbc-dev zlib1g-dev libxxhash-dev "$@")
  local installed package missing=() as_root=()
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null) ||
    true
  for package in "${wanted[@]}"; do
    grep -qx "installed $package" <<<"$installed" || missing+=("$package")
  done
  ((${#missing[@]} > 0)) || return 0

  if ((EUID != 0)); then
    command -v sudo >/dev/null ||
      fail "packages are missing; as root, run: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  say "installing ${missing[*]}"
  # The updates that a new machine runs by itself may hold the lock for a while.
  local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq
             -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0)
  { "${apt[@]}" update && "${apt[@]}" install --no-install-recommends "${missing[@]}"; } \
    </dev/null >/dev/null || fail "apt-get could not install them"
}

# The same for the web page, and for those named.
need_web_packages() {
  local node=(nodejs npm)
  # Whoever has a newer one keeps it.
  if command -v npm >/dev/null && (($(node -p 'parseInt(process.versions.node)' || echo 0) >= 18)); then
    node=()
  fi
  need_packages clang-19 lld-19 wasi-libc libc++-19-dev-wasm32 libc++abi-19-dev-wasm32 \
    libclang-rt-19-dev-wasm32 "${node[@]}" "$@"
}
