# bash completion for tessaly-cli, made of the program's own grammar

_tessaly_cli_profiles() {
  local name typed=${current//\\/}
  typed=${typed#[\"\']}
  while IFS= read -r name; do
    [[ $name != "$typed"* ]] || COMPREPLY+=("$(sed 's/[][ "$&();<>*?#|!{}`\\~'\'']/\\&/g' <<<"$name")")
  done < <(tessaly-cli profiles list 2>/dev/null | cut -f 2)
}

# _tessaly_cli_offer KIND [CHOICES]
_tessaly_cli_offer() {
  case $1 in
    choice) mapfile -t COMPREPLY < <(compgen -W "$2" -- "$current") ;;
    folder) mapfile -t COMPREPLY < <(compgen -d -- "$current") ;;
    file | profile) mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
  esac
  case $1 in
    folder | file) compopt -o filenames 2>/dev/null ;;
    profile) _tessaly_cli_profiles ;;
  esac
}

_tessaly_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} command='' word
  COMPREPLY=()
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case "$command/$word" in
      '/inspect') command='inspect' ;;
      '/samples') command='samples' ;;
      '/calibrate') command='calibrate' ;;
      '/repair') command='repair' ;;
      '/repair-file') command='repair-file' ;;
      '/profiles') command='profiles' ;;
      'profiles/list') command='profiles/list' ;;
      'profiles/show') command='profiles/show' ;;
      'profiles/validate') command='profiles/validate' ;;
      'profiles/import') command='profiles/import' ;;
      'profiles/export') command='profiles/export' ;;
      'profiles/delete') command='profiles/delete' ;;
      '/help') command='help' ;;
    esac
  done
  case "$command $previous" in
    ' --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'inspect --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'samples --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'samples --output') _tessaly_cli_offer file; return ;;
    'calibrate --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'calibrate --result') _tessaly_cli_offer file; return ;;
    'calibrate --preview') _tessaly_cli_offer file; return ;;
    'calibrate --inspect') _tessaly_cli_offer file; return ;;
    'calibrate --name') _tessaly_cli_offer nothing; return ;;
    'calibrate --profile') _tessaly_cli_offer file; return ;;
    'calibrate --pixel-confidence') _tessaly_cli_offer nothing; return ;;
    'calibrate --include') _tessaly_cli_offer choice 'preselected all none'; return ;;
    'calibrate --report') _tessaly_cli_offer file; return ;;
    'repair --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'repair --files-from') _tessaly_cli_offer file; return ;;
    'repair --shard') _tessaly_cli_offer nothing; return ;;
    'repair --profile') _tessaly_cli_offer profile; return ;;
    'repair --output') _tessaly_cli_offer folder; return ;;
    'repair --workers') _tessaly_cli_offer nothing; return ;;
    'repair --existing') _tessaly_cli_offer choice 'skip numberedCopy'; return ;;
    'repair --summary') _tessaly_cli_offer file; return ;;
    'repair-file --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'repair-file --profile') _tessaly_cli_offer profile; return ;;
    'profiles --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'profiles/list --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'profiles/show --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'profiles/validate --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'profiles/import --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'profiles/export --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'profiles/delete --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
    'help --language') _tessaly_cli_offer choice 'en zh-Hans fr'; return ;;
  esac
  case $command in
    '')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help -V --version --language'; else _tessaly_cli_offer choice 'inspect samples calibrate repair repair-file profiles help'; fi
      ;;
    'inspect')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --json'; else _tessaly_cli_offer file; fi
      ;;
    'samples')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --output'; else _tessaly_cli_offer file; fi
      ;;
    'calibrate')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --result --preview --inspect --name --profile --save --pixel-confidence --include --report --second-opinion --json'; else _tessaly_cli_offer file; fi
      ;;
    'repair')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --files-from -0 --null --recursive --shard --profile --output --workers --existing --no-log --summary --keep-dates --sidecars --dry-run -q --quiet -v --verbose --json --json-lines'; else _tessaly_cli_offer file; fi
      ;;
    'repair-file')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --profile'; else _tessaly_cli_offer file; fi
      ;;
    'profiles')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language'; else _tessaly_cli_offer choice 'list show validate import export delete'; fi
      ;;
    'profiles/list')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --json'; else _tessaly_cli_offer nothing; fi
      ;;
    'profiles/show')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language --json'; else _tessaly_cli_offer profile; fi
      ;;
    'profiles/validate')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language'; else _tessaly_cli_offer profile; fi
      ;;
    'profiles/import')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language'; else _tessaly_cli_offer file; fi
      ;;
    'profiles/export')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language'; else _tessaly_cli_offer profile; fi
      ;;
    'profiles/delete')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language'; else _tessaly_cli_offer profile; fi
      ;;
    'help')
      if [[ $current == -* ]]; then _tessaly_cli_offer choice '-h --help --language'; else _tessaly_cli_offer nothing; fi
      ;;
  esac
}

complete -F _tessaly_cli tessaly-cli
