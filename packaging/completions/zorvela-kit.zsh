#compdef zorvela-kit
# Completion of zorvela-kit in zsh. Sub-commands, options and values are those that the program lists.
local -a rows found
local command=$words[2] before=$words[CURRENT-1] row cells
rows=("${(f)$($words[1] --list-options 2>/dev/null)}")
if (( CURRENT == 2 )); then
  compadd -- ${(u)rows%%$'\t'*} --help --version
  return
fi
for row in $rows; do
  cells=("${(@ps:\t:)row}")
  [[ $cells[1] == $command ]] || continue
  found+=(${(s:,:)cells[2]})
  if [[ ,$cells[2], == *,$before,* && $cells[3] == *\{* ]]; then
    compadd -- ${(s:,:)${cells[3]#*\{}%\}}
    return
  fi
done
if [[ $PREFIX == -* ]]; then
  compadd -- $found --help
else
  _files
fi
