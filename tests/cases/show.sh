# For commands with several runs: `show ARGUMENT...` prints the command line, what the run wrote to standard output, its
# messages and its status.
show() {
    echo "\$ veldacov $*"
    "$veldacov" "$@" 2>messages
    local status=$?
    cat messages
    rm messages
    echo "[status $status]"
}
