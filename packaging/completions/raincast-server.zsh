#compdef raincast-server
# SPDX-License-Identifier: MIT
_arguments -s -S \
    '(--level3 --live)--sample[serve sample weather]' \
    '(--sample --live)--level3[serve the Level III products of a folder]:folder:_files -/' \
    '(--sample --level3)--live[fetch what people look at from public providers]' \
    '--live-frames[where --live finds products]:address or none:(none)' \
    '--live-fallback[where it finds them when that fails]:address or none:(none)' \
    '--live-warnings[where it finds warnings]:address or none:(none)' \
    '--replay[let --live begin at a time of the past]:2021-12-11T02\:00Z[xN]:' \
    '--contact[an address that --live tells to the providers]:address:' \
    '--hours[how long frames are kept]:hours:' \
    '--listen[where to listen]:ADDRESS\:PORT:' \
    '--publish[write the whole tree to a folder]:folder:_files -/' \
    '--sites[publish these sites only]:SSS,SSS...:' \
    '--once[publish once, then end]' \
    '--detail[render or publish sharp pictures, too]:detail:(1 2 4)' \
    '--roads[the lines of the highways layer]:file:_files' \
    '--cache[the folder that keeps layers, frames and products]:folder:_files -/' \
    '--end-with-parent[end when the program that started this one ends]' \
    '--quiet[log nothing]' \
    '(- *)'{-h,--help}'[show a short help]' \
    '(- *)'{-v,--version}'[show the version]' \
    '1::command:(render)' \
    '*:file:_files'
