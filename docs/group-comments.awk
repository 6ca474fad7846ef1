# A filter between the headers and Doxygen: in the headers a comment stands for all declarations that follow it without a
# blank line, and a section's line for those that have none of their own. Doxygen wants one each, on the line itself, so
# that its messages name the right line.
function clear() { doc = "" }
/^ *\/\/ ---- .* ----$/ {
    section = $0
    sub(/^ *\/\/ ---- /, "", section)
    sub(/ ----$/, "", section)
    clear()
    fresh = 0
    print
    next
}
/^ *\/\/\// {
    if (!fresh) doc = ""
    line = $0
    sub(/^ *\/\/\/ ?/, "", line)
    doc = doc (doc == "" ? "" : " ") line
    fresh = 1
    print
    next
}
/^ *$/ { clear(); fresh = 0; after = 0; print; next }
/^};/ { section = "" }
{
    # The start of a member's declaration that has no comment of its own.
    if (open == 0 && !fresh && $0 ~ /^    [A-Za-z]/ && $0 !~ /^    (friend|using) / && $0 !~ /\/\/\// && $0 ~ /\(/) {
        text = doc != "" ? doc : section
        if (text != "") sub(/^ +/, "    /** " text " */ ")
    }
    fresh = 0
    open = ($0 ~ /[;{}]( *\/\/.*)?$/) ? 0 : ($0 ~ /^    [A-Za-z]/ || open)
    print
}
