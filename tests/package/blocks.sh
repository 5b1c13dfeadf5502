# To be sourced: the code in a page of the documentation.

# Prints the first block of a page in a language.
# usage: block PAGE LANGUAGE
block() {
  awk -v fence="\`\`\`$2" '
    $0 == fence && !seen { inside = 1; seen = 1; next }
    /^```/ { inside = 0 }
    inside' "$1"
}
