# SPDX-License-Identifier: LicenseRef-Proprietary
# Completion of aquen-solvar-cli for bash.
_aquen_solvar_cli() {
    local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} options
    case $before in
        --bundle) mapfile -t COMPREPLY < <(compgen -f -X '!*.tarnware' -- "$word"; compgen -d -- "$word") && return ;;
        --firmware) mapfile -t COMPREPLY < <(compgen -d -- "$word") && return ;;
        --wait | --timeout) return ;;
    esac
    case ${COMP_WORDS[1]} in
        list) options='--json --quiet --wait --bundle --firmware' ;;
        update) options='aquen solvar --all --bundle --firmware --force --json --quiet --timeout' ;;
        watch) options='--json --bundle --firmware' ;;
        doctor) options='--firmware' ;;
    esac
    [[ $COMP_CWORD -gt 1 ]] || options='list update watch doctor --help --version'
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
}
complete -o filenames -F _aquen_solvar_cli aquen-solvar-cli
