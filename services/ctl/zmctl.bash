# Bash completion of zmctl: "source services/ctl/zmctl.bash", or copy it into
# /usr/share/bash-completion/completions/zmctl. The forms are those of "zmctl help"; a test compares them.

_zmctl_forms='
pps ls
pps get OBJ
pps put OBJ LINE...
pps watch OBJ [-n N] [-t SECONDS]
app start|resume|pause|showonly|hideonly|quit
appdata TEXT
language CODE
theme night|day
requests [--clear]
device [--silent] ID VALUE|fail
time HH:MM [12|24]
key CODE
touch X Y [--hold MS]
drag X1 Y1 X2 Y2
press X Y
move X Y
release X Y
click main|osd WINDOW CONTROL STATE
insert PATH
insert --demo
eject
disc
disc fault read|surface|temperature|region|noanswer|gone|none
catalogue hold ROWS
catalogue release
screen [main|osd] [WINDOW]
shot FILE.png
log [-n N] [--follow]
clock advance MS
settle [-t SECONDS]
ps
kill app|disc
run FILE
wait MS
expect PATH OP VALUE [within MS]
monkey [--seed N] [--seconds S] [--file FILE]
help [COMMAND]
'

# What can stand for one part of a form, a word a line.
_zmctl_values() { # part command current
  local each
  for each in ${1//|/ }; do
    case $1:$2 in
    OBJ:*) "${_zmctl_program[@]}" pps ls 2>/dev/null ;;
    COMMAND:*) _zmctl_names ;;
    PATH:expect) printf '%s\n' screen. pps. requests. ps. ;;
    PATH:* | FILE:* | FILE.png:*) compgen -f -- "$3" ;;
    OP:*) printf '%s\n' == != '<' '<=' '>' '>=' contains matches ;;
    *) [[ $each == [[:upper:]]* ]] || echo "$each" ;;
    esac
  done
}

_zmctl_names() {
  local name rest
  while read -r name rest; do
    [ -z "$name" ] || echo "$name"
  done <<<"$_zmctl_forms" | sort -u
}

# Offers what one form has at the place behind the words given; nothing if they do not fit it.
_zmctl_form() { # form current words...
  local form=$1 current=$2 part next word parts=() options=() values=()
  shift 2
  read -ra parts <<<"$form"
  local fixed=()
  for ((i = 0; i < ${#parts[@]}; ++i)); do
    part=${parts[i]}
    if [[ $part == '[-'*']' ]]; then
      options+=("${part:1:-1}") values+=("")
    elif [[ $part == '[-'* ]]; then
      next=${parts[++i]}
      options+=("${part:1}") values+=("${next%]}")
    else
      part=${part#[}
      fixed+=("${part%]}")
    fi
  done
  local at=0 value="" used=" "
  for word in "$@"; do
    if [ -n "$value" ]; then
      value=""
      continue
    fi
    for ((i = 0; i < ${#options[@]}; ++i)); do
      if [ "$word" = "${options[i]}" ]; then
        value=${values[i]} used+="$word "
        continue 2
      fi
    done
    part=${fixed[at]-}
    # A part with a capital letter takes any word, another one of its own.
    [ -n "$part" ] && { [[ $part == *[[:upper:]]* ]] || [[ "|$part|" == *"|$word|"* ]]; } || return 0
    [[ $part == *... ]] || at=$((at + 1))
  done
  if [ -n "$value" ]; then
    _zmctl_values "$value" "$1" "$current"
    return
  fi
  [ -z "${fixed[at]-}" ] || _zmctl_values "${fixed[at]%...}" "$1" "$current"
  [[ -z ${fixed[at]-} || ${fixed[at]} == *[[:upper:]]* ]] || return 0
  for word in "${options[@]}"; do
    [[ $used == *" $word "* ]] || echo "$word"
  done
}

_zmctl() {
  local words=("${COMP_WORDS[@]:1:COMP_CWORD-1}") current=${COMP_WORDS[COMP_CWORD]} form i
  local _zmctl_program=("${COMP_WORDS[0]}")
  COMPREPLY=()
  if [ "${words[0]-}" = --runtime ]; then
    if [ ${#words[@]} = 1 ]; then
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      return
    fi
    _zmctl_program+=("${words[@]:0:2}")
    words=("${words[@]:2}")
  fi
  mapfile -t COMPREPLY < <(
    if [ ${#words[@]} = 0 ]; then
      _zmctl_names
      [ ${#_zmctl_program[@]} -gt 1 ] || echo --runtime
    else
      while read -r form; do
        [ -z "$form" ] || _zmctl_form "$form" "$current" "${words[@]}"
      done <<<"$_zmctl_forms" | sort -u
    fi | while read -r each; do [[ $each != "$current"* ]] || echo "$each"; done
  )
}

complete -o filenames -F _zmctl zmctl
