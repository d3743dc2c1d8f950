# For commands with several runs: `show ARGUMENT...` prints the command line, what the run wrote to standard output, its
# messages and its status. `view ARGUMENT...` does the same with the second program.
show() {
    echo "\$ veldacov $*"
    shown "$veldacov" "$@"
}
view() {
    echo "\$ veldaview $*"
    shown "$veldaview" "$@"
}
shown() {
    "$@" 2>messages
    local status=$?
    cat messages
    rm messages
    echo "[status $status]"
}
