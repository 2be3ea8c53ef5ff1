
# What only this program and the running phone know.
_kelvoctl_SERVICE() {
    "${COMP_WORDS[0]}" list 2>/dev/null || true
}

_kelvoctl_words() {
    case $1 in
        call) echo int32: string: vector: ;;
        dump) echo clear config ;;
        fold | lamp | screen) echo 0 1 ;;
        getprop | setprop) ls "${KELVO_ROOT-}/dev/properties" 2>/dev/null || true ;;
        ping) _kelvoctl_SERVICE ;;
    esac
}
