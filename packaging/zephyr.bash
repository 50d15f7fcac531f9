# Completion of zephyr's command line for bash.

# The line's words up to the cursor, those that bash has split at = and : in one piece again.
_zephyr_join() {
  local word
  words=()
  for word in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
    if [[ ${#words[@]} -gt 0 && -n $word && ($word == [=:]* || ${words[-1]} == *[=:]) ]]; then
      words[-1]+=$word
    else
      words+=("$word")
    fi
  done
}

# Offers those of the given words that begin as `cur` does. Bash replaces only what stands behind the last = or :, and
# an offer that ends in one goes on right behind it.
_zephyr_offer() {
  local kept=${cur%"${cur##*[=:]}"}
  mapfile -t COMPREPLY < <(compgen -W "$*" -- "$cur")
  if [[ ${COMPREPLY[0]-} == *[=:@] ]]; then compopt -o nospace 2>/dev/null; fi
  COMPREPLY=("${COMPREPLY[@]#"$kept"}")
}

# Files of the kinds, and folders. A name that would be taken for an option gets its folder in front.
_zephyr_files() {  # EXTENSION...
  local name ending kinds=" $* "
  compopt -o filenames 2>/dev/null
  COMPREPLY=()
  while IFS= read -r name; do
    ending=${name##*.}
    if [[ ($name != *.* || $kinds != *" ${ending,,} "*) && ! -d ${name/#\~/$HOME} ]]; then continue; fi
    if [[ $name == -* && -z $ended ]]; then name=./$name; fi
    COMPREPLY+=("$name")
  done < <(compgen -f -- "${cur#"$prefix"}")
}

# A word of the command line as the program gets it, without its quotes.
_zephyr_plain() {
  local word=${1/#\~/$HOME}
  printf '%s' "${word//[\\\"\']/}"
}

# The lines of a GIF file as it is named on the command line; none when it can't be read. The program is the one that
# stands in the line. It must not wait for the terminal, neither by its input nor by a file that is none.
_zephyr_lines() {
  local file
  file=$(_zephyr_plain "$1")
  if [[ -f $file ]]; then "$program" list -- "$file" </dev/null 2>/dev/null; fi
}

# The numbers of the file's blocks, of all or of those of some kinds.
_zephyr_indexes() {  # FILE [KIND|KIND...]
  _zephyr_offer "$(_zephyr_lines "$1" | awk -v kinds="^(${2-})" '$0 ~ kinds { print NR - 1 }')"
}

# The same, or words for blocks.
_zephyr_selection() {  # FILE
  local kinds='header image control plaintext application comment loop names unknown frame last'
  _zephyr_offer "$(_zephyr_lines "$1" | awk '{ print NR - 1 }')" "$kinds"
}

_zephyr_fields() {  # FILE INDEX
  local header='width= height= background= sorted= colour: colours=' image='left= top= interlaced= colours= palette=global encoding=new'
  local control='delay= disposal= transparent= input=' loop='iterations='
  local plain='text= left= top= foreground= background= grid-width= grid-height= cell-width= cell-height='
  case $cur in
    disposal=*) _zephyr_offer disposal={nothing,leave,background,previous}; return ;;
    transparent=*) _zephyr_offer transparent=none; return ;;
    sorted=* | interlaced=* | input=*) _zephyr_offer "${cur%%=*}"={yes,no}; return ;;
    *=*) return ;;
  esac
  case $(_zephyr_lines "$1" | awk -v block="$2" 'NR == block + 1') in
    HEADER*) _zephyr_offer "$header" ;;
    IMAGE*) _zephyr_offer "$image" ;;
    CONTROL*) _zephyr_offer "$control" ;;
    "PLAIN TEXT"*) _zephyr_offer "$plain" ;;
    COMMENT*) _zephyr_offer text= ;;
    LOOP*) _zephyr_offer "$loop" ;;
    APPLICATION* | UNKNOWN*) _zephyr_offer data=@ ;;
    *) _zephyr_offer "$header $image $control $loop $plain data=@" ;;
  esac
}

_zephyr_value() {  # OPTION: what may follow it
  case $1 in
    -o | --from) _zephyr_files gif ;;
    --sheet | --apng) _zephyr_files png ;;
    --effort) _zephyr_offer "$prefix"{fast,normal,max} ;;
    --strip) _zephyr_offer "$prefix"{comments,applications,names,texts,unknown} ;;
    --level) _zephyr_offer "$prefix"{0..9} ;;
    --palette) _zephyr_offer "$prefix"{0..9} ;;
    --kind) _zephyr_offer "$prefix"{image,control,comment,plaintext,loop} ;;
    --match) _zephyr_offer "$prefix"{super,first,photo,drawn,sixteen} ;;
  esac
}

_zephyr_operand() {  # COMMAND, then the operands in front of the cursor
  local command=$1
  shift
  if [[ -n $in_place ]]; then
    case $ended$command in
      yes* | save | repair | thin | optimise) _zephyr_files gif ;;
      *) _zephyr_selection '' ;;
    esac
    return
  fi
  case $command:$# in
    extract:1) _zephyr_indexes "$1" 'IMAGE|APPLICATION|UNKNOWN' ;;
    remap:1 | cost:1) _zephyr_indexes "$1" IMAGE ;;
    extract:2 | remap:2) _zephyr_files bmp ;;
    cost:2) _zephyr_files png ;;
    set:2) _zephyr_selection "$1" ;;
    set:[3-9] | set:??*) _zephyr_fields "$1" "$3" ;;
    delete:[01]) _zephyr_files gif ;;
    delete:*) _zephyr_selection "$1" ;;
    frames:0 | check:* | list:0 | advise:0 | cost:0 | diff:[01] | save:[01] | repair:[01] | extract:0 | remap:0 | set:[01] | optimise:[01] | insert:[01]) _zephyr_files gif ;;
    insert:* | build:*) _zephyr_files gif png jpg jpeg bmp ;;
    move:[01] | copy:[01] | timing:[01] | reverse:[01] | thin:[01] | cut:[01]) _zephyr_files gif ;;
    move:* | copy:*) _zephyr_selection "$1" ;;
  esac
}

_zephyr() {  # PROGRAM, as it was typed
  local words cur prefix='' ended='' in_place='' names='--owner --organisation' classic=--classic options operands=() i program
  local edits="--in-place --dry-run --strict --fit-screen $names"
  program=$(_zephyr_plain "$1")
  COMPREPLY=()
  _zephyr_join
  cur=${words[-1]}
  if [[ ${#words[@]} -eq 2 ]]; then
    _zephyr_offer list diff save extract remap insert delete set move copy timing reverse thin cut build repair frames check optimise cost advise --help --version
    return
  fi
  case ${words[1]} in
    list) options='--json --text --sizes --strict' ;;
    diff) options=--json ;;
    save | set | reverse | cut | repair) options=$edits ;;
    delete) options="--keep-looks $edits" ;;
    extract) options=--strict ;;
    remap) options='--palette --dither --strict' ;;
    insert) options="--at --kind --remap --dither --keep $edits" ;;
    move) options="--at --keep-looks $edits" ;;
    copy) options="--at --from --remap --dither --keep --keep-looks $edits" ;;
    timing) options="--delay --scale --total --least $edits" ;;
    thin) options="--every $edits" ;;
    frames) options='--raw --transparent --background --no-text --level --strict --sheet --columns --apng --times --json' ;;
    check) options=--json ;;
    optimise) options="--effort --keep-frames --strip --lossy --to --jobs $edits" classic='' ;;
    build) options="-o --match --web --loop --fps --delay --delays --centre --all-frames --start --skip-corrupted $names" ;;
    cost) options=--strict ;;
    advise) options='--json --strict' classic='' ;;
    *) return ;;
  esac
  for ((i = 2; i < ${#words[@]} - 1; ++i)); do
    # Behind "--" no word is an option: none begins with a hyphen once `ended` stands in front of it.
    case $ended${words[i]} in
      --) ended=yes ;;
      --in-place) in_place=yes ;;
      -o | --palette | --kind | --match | --at | --delay | --from | --scale | --total | --least | --every | --background | --level | --sheet | --columns | --apng | --effort | --strip | --lossy | --to | --jobs | --owner | --organisation) ((++i)) ;;
      -?*) ;;
      *) operands+=("${words[i]}") ;;
    esac
  done
  if ((i == ${#words[@]})); then
    _zephyr_value "${words[-2]}"
  elif [[ $cur == -*=* && -z $ended ]]; then
    prefix=${cur%%=*}=
    _zephyr_value "${cur%%=*}"
  elif [[ $cur == -* && -z $ended ]]; then
    _zephyr_offer "$options" "$classic" --help
  else
    _zephyr_operand "${words[1]}" "${operands[@]}"
  fi
}

complete -F _zephyr zephyr
