# Completes a typed line as an interactive zsh does and prints what it lists: complete.zsh FUNCTION_FOLDER LINE
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PS1=; fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -u -D; zstyle ':completion:*' verbose yes"
zpty -w shell "stty -echo columns 120 rows 200; LISTMAX=10000; setopt autolist nolistambiguous nomenucomplete; bindkey '^I' list-choices"
zpty -w shell "print ready-\$((40 + 2))"
while zpty -r shell line; do [[ $line == *ready-42* ]] && break; done
zpty -n -w shell "$2"$'\t'
# The list has come once the line below it is answered.
zpty -n -w shell $'\025'
zpty -w shell "print done-\$((40 + 2))"
while zpty -r shell line; do
    [[ $line == *done-42* ]] && break
    print -r -- "${line//$'\r'}"
done
zpty -d shell
