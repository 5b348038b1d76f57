# Bash completion for kestrin-cli and kestrin-sim. The options, their arguments and their choices
# are read from the program's own --help at every completion, so they always match the program
# that runs.

# Reads a help text; prints one line per option it defines: the option, its argument (empty for a
# flag) and the choices its description lists, separated by tabs. A description lists choices
# when, past its last colon and without its remarks in brackets, it is nothing but single words
# separated by commas or "or" ("CO (coil), DI ...", "write: single (FC05/06) or multiple").
_kestrin_options() {
    awk '
    function flush(   text, n, pieces, i, word, choices) {
        if (option == "") return
        text = description
        gsub(/\([^)]*\)/, "", text)
        sub(/;.*/, "", text)
        sub(/.*:/, "", text)
        gsub(/\.\.\./, "", text)
        gsub(/ or /, ",", text)
        n = split(text, pieces, ",")
        choices = ""
        for (i = 1; i <= n; ++i) {
            word = pieces[i]
            gsub(/^[ \t]+|[ \t]+$/, "", word)
            if (word !~ /^[A-Za-z0-9_.+-]+$/) { choices = ""; break }
            choices = choices (choices == "" ? "" : " ") word
        }
        if (n < 2) choices = ""
        printf "%s\t%s\t%s\n", option, argument, choices
        option = ""
    }
    /^[ \t]+--[a-z]/ {
        flush()
        match($0, /^[ \t]+/)
        indent = RLENGTH
        line = substr($0, indent + 1)
        match(line, /^--[a-z0-9-]+/)
        option = substr(line, 1, RLENGTH)
        line = substr(line, RLENGTH + 1)
        argument = ""
        if (line ~ /^ [^ ]/) {
            match(line, /^ [^ ]+/)
            argument = substr(line, 2, RLENGTH - 1)
            line = substr(line, RLENGTH + 1)
        }
        description = line
        next
    }
    option != "" && match($0, /^[ \t]+[^ \t-]/) && RLENGTH - 1 > indent {
        description = description " " $0
        next
    }
    { flush() }
    END { flush() }'
}

# The subcommands a help text shows in its usage lines ("kestrin-cli read ...").
_kestrin_subcommands() {
    sed -n "s/^[[:space:]]*\(Usage:[[:space:]]*\)\{0,1\}$1 \([a-z][a-z-]*\).*/\2/p" | awk '!seen[$0]++'
}

_kestrin_files() {
    if declare -F _filedir >/dev/null; then
        _filedir
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    fi
}

# Serial adapters first; any other device or a pseudo-terminal by its file name.
_kestrin_ports() {
    local port ports=()
    for port in /dev/ttyUSB* /dev/ttyACM* /dev/serial/by-id/*; do
        [[ -e $port ]] && ports+=("$port")
    done
    mapfile -t COMPREPLY < <(compgen -W "${ports[*]}" -- "$cur")
    [[ ${#COMPREPLY[@]} -gt 0 ]] || _kestrin_files
}

# Completes the argument of option $1 from the option table on standard input; fails when $1
# takes no argument.
_kestrin_argument() {
    local option argument choices
    while IFS=$'\t' read -r option argument choices; do
        [[ $option == "$1" && -n $argument ]] || continue
        if [[ -n $choices ]]; then
            mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$cur")
        elif [[ $option == --port ]]; then
            _kestrin_ports
        elif [[ $argument == *FILE* || $argument == *PATH* ]]; then
            _kestrin_files
        fi
        return 0
    done
    return 1
}

_kestrin() {
    local cur prev words cword
    if declare -F _init_completion >/dev/null; then
        _init_completion || return
    else
        words=("${COMP_WORDS[@]}")
        cword=$COMP_CWORD
        cur=${words[cword]}
        prev=${words[cword - 1]}
    fi
    COMPREPLY=()
    local program=${words[0]} help subcommands
    help=$("$program" --help 2>&1) || true
    subcommands=$(_kestrin_subcommands "${program##*/}" <<<"$help")
    if [[ -n $subcommands ]]; then
        if [[ $cword -eq 1 && $cur != -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W "$subcommands" -- "$cur")
            return
        fi
        [[ ${words[1]} == -* ]] || help=$("$program" "${words[1]}" --help 2>&1) || true
    fi
    _kestrin_argument "$prev" < <(_kestrin_options <<<"$help") && return
    local options
    options=$(grep -oE -- '--[a-z][a-z0-9-]*' <<<"$help" | sort -u)
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$cur")
}

complete -F _kestrin kestrin-cli kestrin-sim
