# Completes camhook's commands, options, values and tags. For bash:
#
#   source scripts/completion.bash
#
# For zsh:
#
#   autoload -U +X compinit bashcompinit && compinit && bashcompinit
#   source scripts/completion.bash

_camhook() {
  local camhook=${COMP_WORDS[0]} command=${COMP_WORDS[1]} word=${COMP_WORDS[COMP_CWORD]} words
  case ${COMP_WORDS[COMP_CWORD - 1]} in
    --color) words='auto always never' ;;
    --hook) words='request result session capture' ;;
    --logs) words='debug info error' ;;
    --tag) words=$("$camhook" tags --color never | cut -d ' ' -f 1) ;;
    *)
      if [ "$COMP_CWORD" -eq 1 ]; then
        words="help $("$camhook" help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\)  .*/\1/p')"
      elif [ "$command" = help ]; then
        words=$("$camhook" help | sed -n '/^Subcommands:/,$s/^  \([a-z]*\)  .*/\1/p')
      elif [[ $word == -* ]]; then
        words=$("$camhook" help "$command" | grep -oE '^  (-[a-z],)?--?[a-z-]+' | tr ',' ' ')
      elif [ "$command" = why ] && [ "$COMP_CWORD" -ge 4 ]; then
        words="return $("$camhook" tags --color never | cut -d ' ' -f 1)"
      fi
      ;;
  esac 2>/dev/null
  # shellcheck disable=SC2207 # no word has a blank
  COMPREPLY=($(compgen -W "$words" -- "$word"))
}

# Without an offer the shell completes names of files.
complete -o default -F _camhook camhook ./camhook
