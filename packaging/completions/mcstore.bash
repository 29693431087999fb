# Completion of mcstore's command line.
# shellcheck shell=bash

# Offers those of some words that begin like the current one.
_mcstore_offer() {
  mapfile -t COMPREPLY < <(compgen -W "$*" -- "${COMP_WORDS[COMP_CWORD]}")
}

_mcstore_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen "$@" -- "${COMP_WORDS[COMP_CWORD]}")
}

_mcstore() {
  local stored_kinds='controllers drives virtual-drives bbus nvme-controllers nvme-drives'
  local kinds="expanders $stored_kinds"
  local place='--from --root'
  local reading='--timeout --trace --plugin --buffer-size'
  local health='--stale --warning --critical --ignore'
  local command=${COMP_WORDS[1]}

  if ((COMP_CWORD == 1)); then
    _mcstore_offer summary check get diff watch capture collect decode --help --version
    return
  fi
  case $command:${COMP_WORDS[COMP_CWORD - 1]} in
    get:--format) _mcstore_offer table json ndjson csv xml hex; return ;;
    *:--format) _mcstore_offer text ndjson; return ;;
    *:--color) _mcstore_offer auto always never; return ;;
    *:--kind | *:--require) _mcstore_offer "$kinds"; return ;;
    *:--from | *:--root) _mcstore_files -d; return ;;
    *:--plugin) _mcstore_files -f; return ;;
    *:--timeout | *:--trace | *:--buffer-size | *:--interval | *:--count | *:--for | *:--at) COMPREPLY=(); return ;;
    *:--stale | *:--warning | *:--critical | *:--ignore | *:--columns | *:--sort | *:--filter) COMPREPLY=(); return ;;
  esac
  case $command:${COMP_WORDS[COMP_CWORD]} in
    summary:-*) _mcstore_offer "$health" --color "$place" "$reading" --help ;;
    check:-*) _mcstore_offer --kind --require "$health" "$place" "$reading" --help ;;
    get:-*)
      _mcstore_offer --format --columns --all-columns --sort --filter --no-header --raw-xml --color "$place" \
        "$reading" --help
      ;;
    diff:-*) _mcstore_offer --format "$reading" --help ;;
    watch:-*) _mcstore_offer --interval --count --for --format "$place" "$reading" --help ;;
    capture:-*) _mcstore_offer "$place" --timeout --help ;;
    collect:-*) _mcstore_offer --root --at --help ;;
    decode:-*) _mcstore_offer --plugin --help ;;
    get:* | watch:*) _mcstore_offer all "$kinds" ;;
    diff:* | capture:*) _mcstore_files -d ;;
    collect:*) _mcstore_files -f ;;
    decode:*) if ((COMP_CWORD < 4)); then _mcstore_files -d; else _mcstore_offer "$stored_kinds"; fi ;;
  esac
}

complete -F _mcstore mcstore
