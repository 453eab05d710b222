# SPDX-License-Identifier: LicenseRef-Proprietary
# Completion of aquen-solvar-cli for fish.
complete -c aquen-solvar-cli -f
complete -c aquen-solvar-cli -n __fish_use_subcommand -a list -d 'Print the attached units'
complete -c aquen-solvar-cli -n __fish_use_subcommand -a update -d 'Write firmware into units'
complete -c aquen-solvar-cli -n __fish_use_subcommand -a watch -d 'Print units as they come and go'
complete -c aquen-solvar-cli -n __fish_use_subcommand -a doctor -d 'Print what support needs'
complete -c aquen-solvar-cli -n __fish_use_subcommand -l help -d 'Show the options'
complete -c aquen-solvar-cli -n __fish_use_subcommand -l version -d 'Show the version'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from list update watch' -l json -d 'One JSON object for each event'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from list update' -l quiet -d 'Errors only'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from list update watch' -l bundle -r -F -d 'Bundle to write'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from list update watch doctor' -l firmware -x -a '(__fish_complete_directories)' -d 'Folder of the bundles'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from list' -l wait -x -d 'Wait for a unit, seconds'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from update' -a 'aquen solvar'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from update' -l all -d 'All that match'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from update' -l force -d 'Also if up to date'
complete -c aquen-solvar-cli -n '__fish_seen_subcommand_from update' -l timeout -x -d 'Limit for each unit, seconds'
