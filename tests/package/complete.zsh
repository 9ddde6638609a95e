# Completes a typed line as an interactive zsh does and prints what it lists: complete.zsh FUNCTION_FOLDER LINE
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PS1=; fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -u -D; zstyle ':completion:*' verbose yes"
# Redrawn before the mark is printed: the list would else come whenever no key is pending.
zpty -w shell "show() { zle list-choices; zle -R; print; print -r -- listed-\$((40 + 2)) }; zle -N show; bindkey '^I' show"
zpty -w shell "stty -echo columns 120 rows 200; print ready-\$((40 + 2))"
while zpty -r shell line; do [[ $line == *ready-42* ]] && break; done
zpty -n -w shell "$2"$'\t'
while zpty -r shell line; do
    [[ $line == *listed-42* ]] && break
    print -r -- "${line//$'\r'}"
done
zpty -d shell
