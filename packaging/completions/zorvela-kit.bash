# Completion of zorvela-kit in bash. Sub-commands, options and values are those that the program lists.
_zorvela_kit() {
  local command=${COMP_WORDS[1]} word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} options values
  options=$("${COMP_WORDS[0]}" --list-options 2>/dev/null)
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "$(cut -f1 <<<"$options" | uniq) --help --version" -- "$word")
    return
  fi
  options=$(awk -F'\t' -v command="$command" '$1 == command' <<<"$options")
  values=$(awk -F'\t' -v option="$before" 'index("," $2 ",", "," option ",") && $3 ~ /[{]/ {
    gsub(/.*[{]|[}]/, "", $3); gsub(",", " ", $3); print $3 }' <<<"$options")
  if [ -n "$values" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word")
  elif [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(cut -f2 <<<"$options" | tr ',' ' ') --help" -- "$word")
  fi
}
# Where it has no answer, names of files.
complete -o default -F _zorvela_kit zorvela-kit
