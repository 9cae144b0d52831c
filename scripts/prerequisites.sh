# Sourced by the build scripts: makes sure the Debian packages the build needs are present,
# installing them when this user may, else naming them in one line.
kelvra_packages="g++ cmake make clang-format libgtest-dev libgmock-dev libbenchmark-dev libgaviotatb-dev gaviotatb"
kelvra_missing=""
for p in $kelvra_packages; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || kelvra_missing="$kelvra_missing $p"
done
if [ -n "$kelvra_missing" ]; then
  if [ "$(id -u)" = 0 ]; then
    apt-get update -qq && apt-get install -y -qq $kelvra_missing >/dev/null
  elif command -v sudo >/dev/null && sudo -n true 2>/dev/null; then
    sudo apt-get update -qq && sudo apt-get install -y -qq $kelvra_missing >/dev/null
  else
    echo "missing prerequisites; install them with: sudo apt-get install$kelvra_missing" >&2
    exit 1
  fi
fi
