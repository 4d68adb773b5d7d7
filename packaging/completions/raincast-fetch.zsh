#compdef raincast-fetch
# SPDX-License-Identifier: MIT
_arguments -s -S \
    '--frames[how many frames to fetch]:1 to 25:' \
    '--interval[the least time between two frames]:minutes:' \
    '--cache[the folder that keeps the frames]:folder:_files -/' \
    '--radar-server[where the images come from]:host:_hosts' \
    '--no-warnings[do not fetch the warnings image]' \
    '(-q --quiet)'{-q,--quiet}'[print only the frames and usage errors]' \
    '--verbose[name each URL with its HTTP status]' \
    '(- *)'{-h,--help}'[show a short help]' \
    '(- *)'{-v,--version}'[show the version]' \
    ':site:' \
    '::product:(N0R NCR N0Z N1P NTP N0V N0S)'
