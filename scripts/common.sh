# Shared steps of ./test.sh: dependencies and the build.

QUILL_PACKAGES=(
  cmake ninja-build g++ pkg-config
  qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev libqt5opengl5-dev
  libavformat-dev libavcodec-dev libavutil-dev libswscale-dev libswresample-dev
  libsdl2-dev libxcb1-dev libxcb-shm0-dev libssl-dev libspdlog-dev
  ffmpeg xvfb xauth mesa-utils libgl1-mesa-dri
  dpkg-dev desktop-file-utils python3
)
QUILL_JOBS=$(nproc 2>/dev/null || echo 2)

quill_install_dependencies() {
  local missing=()
  local pkg
  # One query for the whole list: a package dpkg does not know is missing too.
  local installed
  installed=$(dpkg-query -W -f='${Package} ${Status}\n' "${QUILL_PACKAGES[@]}" 2>/dev/null |
    awk '$NF == "installed" {print $1}')
  for pkg in "${QUILL_PACKAGES[@]}"; do
    grep -qx "$pkg" <<<"$installed" || missing+=("$pkg")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=()
  if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null 2>&1; then
      echo "error: these Debian packages are missing and neither root nor sudo is available to install them:" >&2
      echo "  ${missing[*]}" >&2
      return 1
    fi
    sudo=(sudo)
  fi
  "${sudo[@]}" apt-get update -qq
  # sudo resets the environment, so the frontend setting goes through env.
  "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# quill_build DIR [CMAKE ARGS...]
quill_build() {
  local dir=$1
  shift
  local launcher=()
  # A compiler cache, where one is installed, makes rebuilds of a fresh tree cheap.
  command -v ccache >/dev/null 2>&1 && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE="${QUILL_BUILD_TYPE:-RelWithDebInfo}" "${launcher[@]}" "$@"
  cmake --build "$dir" -j "${QUILL_JOBS}"
}
