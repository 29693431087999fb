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
  local kinds="all expanders $stored_kinds"
  local options='--root --trace --plugin --buffer-size --help'
  local command=${COMP_WORDS[1]}

  if ((COMP_CWORD == 1)); then
    _mcstore_offer get watch collect decode --help --version
    return
  fi
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --format) _mcstore_offer table json xml hex; return ;;
    --root) _mcstore_files -d; return ;;
    --plugin) _mcstore_files -f; return ;;
    --trace | --buffer-size | --interval | --count | --at) COMPREPLY=(); return ;;
  esac
  case $command:${COMP_WORDS[COMP_CWORD]} in
    get:-*) _mcstore_offer --format "$options" ;;
    watch:-*) _mcstore_offer --interval --count "$options" ;;
    collect:-*) _mcstore_offer --root --at --help ;;
    decode:-*) _mcstore_offer --plugin --help ;;
    get:* | watch:*) _mcstore_offer "$kinds" ;;
    collect:*) _mcstore_files -f ;;
    decode:*) if ((COMP_CWORD < 4)); then _mcstore_files -d; else _mcstore_offer "$stored_kinds"; fi ;;
  esac
}

complete -F _mcstore mcstore
