# A virtual screen that only the user who starts it can look at. To be sourced. Debian packages: xauth, xvfb.

# start_display FOLDER: starts the screen, sets DISPLAY, XAUTHORITY and `server`, its process. FOLDER must be readable
# by the user alone: who can read the cookie in it can watch and drive all that is on the screen.
start_display() {
  local folder=$1 cookie number
  cookie=$(mcookie)
  export XAUTHORITY=$folder/cookie
  : >"$XAUTHORITY"
  # The cookie comes to xauth by its input: arguments can be read by all users of the machine.
  xauth -q source - <<<"add :0 . $cookie"

  # The server chooses a free number and writes it once it accepts clients.
  mkfifo "$folder/number"
  Xvfb -displayfd 3 -auth "$XAUTHORITY" -screen 0 1366x768x24 -nolisten tcp \
    3>"$folder/number" >"$folder/server.log" 2>&1 &
  server=$!
  if ! read -r number <"$folder/number"; then
    echo "The virtual display did not start:" >&2
    cat "$folder/server.log" >&2
    return 1
  fi
  export DISPLAY=:$number
  xauth -q source - <<<"add $DISPLAY . $cookie"
}
