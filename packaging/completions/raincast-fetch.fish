# SPDX-License-Identifier: MIT
complete -c raincast-fetch -f
complete -c raincast-fetch -a "N0R NCR N0Z N1P NTP N0V N0S"
complete -c raincast-fetch -l frames -x -d "How many frames to fetch, 1 to 25"
complete -c raincast-fetch -l interval -x -d "The least time between two frames, in minutes"
complete -c raincast-fetch -l cache -x -a "(__fish_complete_directories)" -d "The folder that keeps the frames"
complete -c raincast-fetch -l radar-server -x -a "(__fish_print_hostnames)" -d "Where the images come from"
complete -c raincast-fetch -l no-warnings -d "Do not fetch the warnings image"
complete -c raincast-fetch -s q -l quiet -d "Print only the frames and usage errors"
complete -c raincast-fetch -l verbose -d "Name each URL with its HTTP status"
complete -c raincast-fetch -s h -l help -d "Show a short help"
complete -c raincast-fetch -s v -l version -d "Show the version"
