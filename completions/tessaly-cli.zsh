#compdef tessaly-cli
# zsh completion for tessaly-cli, made of the program's own grammar

_tessaly-cli-profiles() {
  local -a names
  names=(${(f)"$(tessaly-cli profiles list 2>/dev/null | cut -f 2)"})
  compadd -a names
  _files
}

_tessaly-cli() {
  local state line
  local -a commands
  commands=(
    'inspect:Print what is known about a DNG file, as JSON'
    'samples:Write the raw samples of a DNG file'
    'calibrate:Find the fixed sensor defects in a set of calibration frames'
    'repair:Write repaired copies of all DNG files of a folder, or of one file'
    'repair-file:Write the repaired copy of one DNG file'
    'profiles:The stored camera profiles'
    'help:Describe the program or a command'
  )
  _arguments -C \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '-V[Display program version information and exit]' \
    '--version[Display program version information and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '1:command:->command' '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        inspect) _tessaly-cli-inspect ;;
        samples) _tessaly-cli-samples ;;
        calibrate) _tessaly-cli-calibrate ;;
        repair) _tessaly-cli-repair ;;
        repair-file) _tessaly-cli-repair-file ;;
        profiles) _tessaly-cli-profiles ;;
        help) _tessaly-cli-help ;;
      esac
      ;;
  esac
}

_tessaly-cli-inspect() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--json[One JSON object, as without it]' \
    ':FILE:_files'
}

_tessaly-cli-samples() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--output[The file for the samples, unsigned 16-bit little-endian, row after row; - is standard output]:OUT:_files' \
    ':FILE:_files'
}

_tessaly-cli-calibrate() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--result[Write the result of the analysis as JSON; - is standard output]:OUT.json:_files' \
    '--preview[Write the preview as a picture (binary PGM)]:OUT.pgm:_files' \
    '--inspect[Preview this photograph instead of a bright-field frame]:FILE:_files' \
    '--name[The name of the profile]:NAME: ' \
    '--profile[Write a profile of the included candidates to a file]:OUT.json:_files' \
    '--save[Put a profile of the included candidates into the profile store]' \
    '--pixel-confidence[Include pixels from this confidence on, 50 to 100; otherwise 98]:PERCENT: ' \
    '--include[Which candidates are included]:preselected|all|none:(preselected all none)' \
    '--report[Write a report of the sensor'\''s noise and defects as a web page; looks closer for that]:OUT.html:_files' \
    '--second-opinion[Also look for soft shadows, weak columns and unsteady pixels; told in --result, never included]' \
    '--json[Print what --result writes, and nothing else]' \
    '*:FOLDER_OR_FILES:_files'
}

_tessaly-cli-repair() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--files-from[Also repair what this file names, one a line; - is standard input]:LIST:_files' \
    '-0[Names in the list end in a zero byte instead of a line feed]' \
    '--null[Names in the list end in a zero byte instead of a line feed]' \
    '--recursive[With everything below the folders; the copies mirror them below the output folder]' \
    '--shard[Only every N-th file, from the K-th on, for one of N machines]:K/N: ' \
    '--profile[A profile file, or a stored profile'\''s id or name]:PROFILE:_tessaly-cli-profiles' \
    '--output[The folder for the copies; otherwise as the preferences say]:FOLDER:_files -/' \
    '--workers[How many files at once, 1 to 4; 0 is automatic]:N: ' \
    '--existing[What to do when a copy'\''s name is taken]:skip|numberedCopy:(skip numberedCopy)' \
    '--no-log[Write no CSV log into the output folder]' \
    '--summary[Write what became of the files as JSON; - is standard output]:OUT.json:_files' \
    '--keep-dates[Give each copy the modification time of its original]' \
    '--sidecars[Copy .xmp and .pp3 files beside an original to its copy]' \
    '--dry-run[Say what would happen, by the metadata alone; write nothing]' \
    '-q[Say only what went wrong]' \
    '--quiet[Say only what went wrong]' \
    '-v[Say where each copy is and how many samples were repaired]' \
    '--verbose[Say where each copy is and how many samples were repaired]' \
    '--json[Print what became of the files as one JSON object, and nothing else]' \
    '--json-lines[Print a JSON object a line for each file as it finishes]' \
    '*:SOURCE:_files'
}

_tessaly-cli-repair-file() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--profile[A profile file, or a stored profile'\''s id or name]:PROFILE:_tessaly-cli-profiles' \
    ':SOURCE:_files' \
    ':DESTINATION:_files'
}

_tessaly-cli-profiles() {
  local state line
  local -a commands
  commands=(
    'list:Print a line a profile: id, name, camera model, serial, numbers of pixels, columns and spots'
    'show:Print a profile as JSON'
    'validate:Check that a profile fits a DNG file; prints nothing when it does'
    'import:Put a profile file into the store, as a new copy'
    'export:Write a profile to a file'
    'delete:Remove a profile from the store'
  )
  _arguments -C \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '1:command:->command' '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
        list) _tessaly-cli-profiles-list ;;
        show) _tessaly-cli-profiles-show ;;
        validate) _tessaly-cli-profiles-validate ;;
        import) _tessaly-cli-profiles-import ;;
        export) _tessaly-cli-profiles-export ;;
        delete) _tessaly-cli-profiles-delete ;;
      esac
      ;;
  esac
}

_tessaly-cli-profiles-list() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--json[Print them as one JSON object]'
}

_tessaly-cli-profiles-show() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '--json[One JSON object, as without it]' \
    ':P:_tessaly-cli-profiles'
}

_tessaly-cli-profiles-validate() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    ':P:_tessaly-cli-profiles' \
    ':FILE:_files'
}

_tessaly-cli-profiles-import() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    ':FILE:_files'
}

_tessaly-cli-profiles-export() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    ':P:_tessaly-cli-profiles' \
    ':FILE:_files'
}

_tessaly-cli-profiles-delete() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    ':P:_tessaly-cli-profiles'
}

_tessaly-cli-help() {
  _arguments \
    '-h[Print this help message and exit]' \
    '--help[Print this help message and exit]' \
    '--language[Language of messages; otherwise the saved preference]:en|zh-Hans|fr:(en zh-Hans fr)' \
    '*:COMMAND: '
}

_tessaly-cli "$@"
