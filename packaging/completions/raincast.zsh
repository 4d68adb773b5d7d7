#compdef raincast
# SPDX-License-Identifier: MIT
_arguments -s -S \
    '--page-file[use this file of pages]:file of pages:_files' \
    '--geometry[the size of the window]:WxH:' \
    '--screenshot[save a picture of the window and end]:PNG file:_files' \
    '--loop[save the loop of the first radar item and end]:GIF file:_files' \
    '--nmea[where the position comes from]:source:(serial\: tcp\: udp\: gpsd\: file\:)' \
    '--radar-server[where the radar images come from]:host:_hosts' \
    '--basemap-server[where counties and cities come from]:host:_hosts' \
    '--live-arguments[options for the server of live radar]:text:' \
    '--site[show this radar site first]:site:' \
    '--product[the product of that site]:product:(N0R NCR N0Z N1P NTP N0V N0S)' \
    '--welcome[the site to begin with]:site:' \
    '(- *)'{-h,--help}'[show a short help]' \
    '(- *)'{-v,--version}'[show the version]' \
    '::file of pages:_files -g "*.raincast"'
