# Sourced by the scripts beside it.

# Runs a command as root, directly or through sudo.
as_root() {
  if ((EUID == 0)); then
    "$@"
  else
    sudo "$@"
  fi
}

# need_packages NAME...: installs those of the Debian packages that are missing, and says so.
need_packages() {
  if ! command -v dpkg-query apt-get >/dev/null; then
    echo "No Debian package tools here; taking it that the counterparts of these are installed: $*" >&2
    return 0
  fi
  local name missing=()
  for name in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$name" 2>/dev/null | grep -qx installed || missing+=("$name")
  done
  ((${#missing[@]} == 0)) && return 0
  if ((EUID != 0)) && ! command -v sudo >/dev/null; then
    echo "Missing packages: ${missing[*]}. Install them, or run this as root or with sudo installed." >&2
    return 1
  fi

  local install=(env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq -o Dpkg::Use-Pty=0 --no-install-recommends "${missing[@]}")
  echo "Installing missing packages with apt-get: ${missing[*]}" >&2
  if apt-cache show "${missing[@]}" >/dev/null 2>&1 && as_root "${install[@]}" >&2; then
    return 0
  fi
  echo "Updating the package lists with apt-get first" >&2
  as_root apt-get update -qq >&2 && as_root "${install[@]}" >&2
}
