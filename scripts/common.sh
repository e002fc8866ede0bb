# Shared steps of ./test.sh and ./run.sh: dependencies and the build.

QUILL_PACKAGES=(
  cmake ninja-build g++ pkg-config
  qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev libqt5opengl5-dev
  libavformat-dev libavcodec-dev libavutil-dev libswscale-dev libswresample-dev
  libsdl2-dev libxcb1-dev libssl-dev libspdlog-dev nlohmann-json3-dev
  ffmpeg xvfb xauth mesa-utils libgl1-mesa-dri
)
QUILL_JOBS=$(nproc 2>/dev/null || echo 2)

quill_install_dependencies() {
  local missing=()
  local pkg
  for pkg in "${QUILL_PACKAGES[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$pkg")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  "${sudo[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# quill_build DIR [CMAKE ARGS...]
quill_build() {
  local dir=$1
  shift
  cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE="${QUILL_BUILD_TYPE:-RelWithDebInfo}" "$@"
  cmake --build "$dir" -j "${QUILL_JOBS}"
}
