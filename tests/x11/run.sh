#!/usr/bin/env bash
# Works the gallery with a real mouse and keyboard on an X display of its own.
#   tests/x11/run.sh [BUILD]    BUILD: the folder of the built gallery (default build/dev)
# The screen and the cursor alone decide. The widget tree that F12 prints only tells where to click. What has just been
# done is known to be on the screen when the marker, a switch, has shown and lost its hover look afterwards (settle).
# Pictures are left in out/x11.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
build="${1:-build/dev}"
gallery="$(realpath -m "$build/gallery")"
out=out/x11
width=1400
height=860

probe="$build/x11_probe"
[ -x "$probe" ] || probe=build/dev/x11_probe
for needed in "$gallery" "$probe"; do
    [ -x "$needed" ] || { echo "x11: $needed is missing: build the dev preset first" >&2; exit 2; }
done
for needed in Xvfb xdotool; do
    command -v $needed > /dev/null || { echo "x11: $needed is missing: run tools/install-deps.sh all" >&2; exit 2; }
done

rm -rf "$out"
mkdir -p "$out"
kept="$(mktemp -d)"
server=
program=
cover=

clean_up() {
    [ -z "$cover" ] || kill "$cover" 2> /dev/null
    [ -z "$program" ] || kill "$program" 2> /dev/null
    [ -z "$server" ] || kill "$server" 2> /dev/null
    wait 2> /dev/null
    rm -rf "$kept"
}
trap clean_up EXIT
trap 'exit 1' INT TERM

# await <command...>: until it succeeds, up to 10 seconds.
await() {
    local end=$((SECONDS + 10))
    until "$@"; do
        [ $SECONDS -lt $end ] || return 1
        sleep 0.1
    done
}

give_up() {
    echo "x11: $1" >&2
    [ -z "${DISPLAY_READY:-}" ] || "$probe" png "$out/gave-up.png"
    exit 1
}

# --- The screen; regions are kept under a name, points are of the gallery's window ---

# keep <name> <x> <y> <width> <height>
keep() { "$probe" save "$kept/$1" $(($2 + left)) $(($3 + top)) "$4" "$5"; }
# changes <name> [pixels]: waits until so many pixels differ.
changes() { "$probe" wait-differ "$kept/$1" "${2:-20}"; }
# returns <name>: waits until it looks as it did.
returns() { "$probe" wait-same "$kept/$1"; }
# appears <name> <x> <y>: waits until what was kept shows at another place.
appears() { "$probe" wait-same "$kept/$1" $(($2 + left)) $(($3 + top)); }
# is <name> [x y]: looks like it now.
is() {
    if [ $# -eq 1 ]; then "$probe" same "$kept/$1"; else "$probe" same "$kept/$1" $(($2 + left)) $(($3 + top)); fi
}
picture() { "$probe" png "$out/$1.png"; }

# --- Mouse and keyboard ---

move() { xdotool mousemove $(($1 + left)) $(($2 + top)); }
# Later than a double click, which is no press to a border.
press() { sleep 0.4 && xdotool mousedown 1; }
release() { xdotool mouseup 1; }
park() { move 12 $((height - 12)); }
# click <x> <y>
click() { move "$1" "$2" && press && release; }
# wheel <up|down> <notches> <x> <y>: a notch scrolls a pane by 40, as the skins say.
wheel() {
    local button=5
    [ "$1" = down ] || button=4
    move "$3" "$4" && xdotool click --repeat "$2" --delay 20 $button
}
# drag <from x> <from y> <to x> <to y>: leaves the button held.
drag() {
    local step
    move "$1" "$2"
    press
    for step in 1 2 3 4 5; do
        move $(($1 + ($3 - $1) * step / 5)) $(($2 + ($4 - $2) * step / 5))
    done
}
# Everything done so far has been taken in and drawn; the mouse rests over the scene.
settle() {
    move "$marker_x" "$marker_y" && changes marker && park && returns marker
}

# --- Where the widgets are ---

log="$out/session.log"

# locate <window> <type and text as the trees have them>: sets x, y, w, h and the middle, cx and cy.
locate() {
    read -r x y w h < <(awk -v window="name \"$1\"" -v what="$2 " '
        /^  [^ ]/ { inside = index($0, window) > 0 }
        inside && index($0, what) && match($0, /-?[0-9]+,-?[0-9]+ [0-9]+x[0-9]+/) {
            place = substr($0, RSTART, RLENGTH)
            gsub(/[,x]/, " ", place)
            print place
            exit
        }' "$log")
    [ -n "${h:-}" ] || give_up "the tree has no $2 in the window $1"
    cx=$((x + w / 2))
    cy=$((y + h / 2))
}

# project <x> <y>: sets px and py, where a point of the screen in the scene shows. The screen is seen nearly from the
# front, so its corners suffice.
project() {
    px=$(((corners[0] * (sw - $1) * (sh - $2) + corners[2] * $1 * (sh - $2) + corners[4] * (sw - $1) * $2 +
        corners[6] * $1 * $2) / (sw * sh)))
    py=$(((corners[1] * (sw - $1) * (sh - $2) + corners[3] * $1 * (sh - $2) + corners[5] * (sw - $1) * $2 +
        corners[7] * $1 * $2) / (sw * sh)))
}
# project_box <x> <y> <width> <height>: turns a rectangle of the surface into the one in the window: bx, by, bw, bh.
project_box() {
    local right bottom
    project $(($1 + $3)) $(($2 + $4))
    right=$px
    bottom=$py
    project "$1" "$2"
    bx=$px
    by=$py
    bw=$((right - px))
    bh=$((bottom - py))
}

# --- Start ---

start_server() {
    Xvfb -displayfd 3 -screen 0 1440x900x24 -nolisten tcp -noreset 3> "$kept/display" > "$out/xvfb.log" 2>&1 &
    server=$!
    await test -s "$kept/display" || give_up "Xvfb does not start; see $out/xvfb.log"
    DISPLAY=":$(cat "$kept/display")"
    export DISPLAY
    DISPLAY_READY=yes
}

find_window() {
    kill -0 "$program" 2> /dev/null || give_up "the gallery ended at its start; see the logs in $out"
    window="$(xdotool search --name '^Vorlex GUI gallery$' 2> /dev/null | head -n 1)"
    [ -n "$window" ]
}

# start_gallery <name> [folder]: NAME.log and NAME.rec tell of this run. Files of the folder go before the toolkit's.
start_gallery() {
    # What a failed check has left.
    [ -z "$program" ] || { kill "$program" && wait "$program"; } 2> /dev/null
    left=0
    top=0
    xdotool mousemove 2 2
    keep black 0 0 1440 900
    env -C "${2:-.}" -u WAYLAND_DISPLAY SDL_VIDEODRIVER=x11 LIBGL_ALWAYS_SOFTWARE=1 "$gallery" --still --scale 1 \
        --skin dark --size ${width}x$height --record "$PWD/$out/$1.rec" > "$out/$1.log" 2>&1 &
    program=$!
    await find_window || await find_window || give_up "the gallery opens no window"
    changes black 400000 || give_up "the gallery draws nothing"
    left="$(xdotool getwindowgeometry --shell "$window" | sed -n 's/^X=//p')"
    top="$(xdotool getwindowgeometry --shell "$window" | sed -n 's/^Y=//p')"
    # No window manager gives the focus here.
    xdotool windowfocus "$window"
}

tree_count() { [ "$(grep -c ' in the window ' "$log")" -eq "$1" ]; }

# Another tree, for windows that were not shown before.
read_tree_again() {
    local count
    count=$(grep -c ' in the window ' "$log")
    keep plain 0 0 $width $height
    xdotool key F12
    await tree_count $((count + 1)) && changes plain 1000 && xdotool key F12 && returns plain
}

# The first frames are slow and not all alike, so the first tree is for them. F12 shows debug skins along with it.
read_tree() {
    xdotool key F12
    await tree_count 1 || give_up "F12 does not print the tree"
    xdotool key F12
    park
    "$probe" wait-still "$left" "$top" $width $height || give_up "the gallery does not stand still"
    keep start 0 0 $width $height
    xdotool key F12
    await tree_count 2 && changes start 1000 || give_up "F12 does not show the debug skins"
    xdotool key F12
    returns start || give_up "the debug skins do not go away"
    read -r sw sh corners_line < <(sed -n 's/.* \([0-9]*\)x\([0-9]*\) in the window /\1 \2 /p' \
        "$out/session.log" | tail -n 1)
    read -ra corners <<< "${corners_line//,/ }"
    locate controls 'SwitchButton "Scale"'
    marker_x=$cx
    marker_y=$cy
    keep marker "$x" "$y" "$w" "$h"
    locate controls 'Static name "status"'
    keep status "$x" "$y" "$w" "$h"
    status=("$x" "$y" "$w" "$h")
    settle || give_up "the mouse does not reach the gallery"
    arrow="$("$probe" cursor | cut -d ' ' -f 1)"
}

# What the status label says now.
keep_status() { keep status "${status[@]}"; }

# --- Checks ---

a_click_on_a_button_changes_a_label() {
    locate controls 'Button "Press me"'
    click "$cx" "$cy" && changes status && settle && picture clicked
}

# hover_button: the mouse comes to the button "Press me", whose look is kept as "hovered".
hover_button() {
    locate controls 'Button "Press me"'
    settle && keep button "$x" "$y" "$w" "$h" && move "$cx" "$cy" && changes button && keep hovered "$x" "$y" "$w" "$h"
}

# Held down, a button looks hovered while the mouse is elsewhere.
a_press_dragged_out_changes_nothing() {
    hover_button && keep_status && press && changes hovered && park && returns hovered && release && returns button &&
        settle && is status
}

a_press_dragged_out_and_back_counts() {
    hover_button && keep_status && press && changes hovered && park && returns hovered && move "$cx" "$cy" &&
        changes hovered && release && changes status
}

# toggles <window> <what> <width>: three clicks switch its look, or the left `width` units of it, to and fro.
toggles() {
    locate "$1" "$2"
    click "$cx" "$cy" && settle && keep first "$x" "$y" "${3:-$w}" "$h" || return 1
    click "$cx" "$cy" && settle && ! is first && keep second "$x" "$y" "${3:-$w}" "$h" || return 1
    click "$cx" "$cy" && settle && is first && click "$cx" "$cy" && settle && is second
}

a_toggle_changes() { toggles controls 'ToggleButton "Toggle"'; }
a_check_box_changes() { toggles controls 'CheckBox "Shadows"' 22; }

# radios <on> <off> <off>: the mark of the first differs from that of the others.
radios() {
    local on="$1" off="$2" other="$3" ox oy
    locate controls "RadioButton \"$other\""
    ox=$x
    oy=$y
    locate controls "RadioButton \"$off\""
    keep mark "$x" "$y" 22 "$h"
    is mark "$ox" "$oy" || return 1
    locate controls "RadioButton \"$on\""
    ! is mark "$x" "$y"
}

a_radio_group_has_one_choice() {
    settle && radios Medium Low High && keep_status || return 1
    locate controls 'RadioButton "High"'
    click "$cx" "$cy" && settle && radios High Medium Low && ! is status || return 1
    locate controls 'RadioButton "Low"'
    click "$cx" "$cy" && settle && radios Low High Medium && picture radios
}

tab_moves_the_focus() {
    locate controls 'Button "Press me"'
    click "$cx" "$cy" && settle && keep button_focused "$x" "$y" "$w" "$h" || return 1
    locate controls 'ToggleButton "Toggle"'
    keep toggle "$x" "$y" "$w" "$h"
    xdotool key Tab
    changes toggle && ! is button_focused && keep toggle_focused "$x" "$y" "$w" "$h" && picture focus || return 1
    xdotool key Tab
    returns toggle || return 1
    xdotool key shift+Tab
    returns toggle_focused && keep_status || return 1
    xdotool key Return
    changes status
}

a_tooltip_shows_and_hides() {
    locate controls 'Button "Press me"'
    # The tip is below the mouse and to its right.
    settle && keep below $((cx + 8)) $((cy + 28)) 200 20 || return 1
    move $((cx - 4)) "$cy" && move "$cx" "$cy" && changes below 2000 && picture tooltip && park && returns below
}

a_surface_in_the_scene_takes_the_mouse() {
    locate screen 'Button name "screen button"'
    project "$cx" "$cy"
    local mx=$px my=$py count l t r b
    project_box "$x" "$y" "$w" "$h"
    local button_left=$bx button_top=$by button_width=$bw button_height=$bh
    locate screen 'Static name "screen status"'
    project_box "$x" "$y" "$w" "$h"
    settle && keep label "$bx" "$by" "$bw" "$bh" || return 1
    project_box 0 0 "$sw" "$sh"
    keep screen "$bx" "$by" "$bw" "$bh"
    move "$mx" "$my" && changes screen 200 || return 1
    # The button under the mouse, and nothing else, has its hover look.
    read -r count l t r b < <("$probe" differ "$kept/screen")
    ((l - left >= button_left - 8 && r - left <= button_left + button_width + 8 && t - top >= button_top - 8 &&
        b - top <= button_top + button_height + 8 && l - left < mx && mx < r - left && t - top < my &&
        my < b - top)) || return 1
    press && release && changes label && picture surface && settle && ! is label
}

the_hover_look_goes_when_the_mouse_leaves_the_program() {
    hover_button || return 1
    move $((-left + 2)) $((-top + 2)) && returns button
}

# Half of a hovered button is covered by a window of another program, to which the mouse goes.
the_hover_look_goes_under_another_window() {
    local gone
    hover_button && keep half "$x" "$y" $((w / 2)) "$h" && keep covered "$cx" "$y" $((w / 2)) "$h" || return 1
    move $((cx - 10)) "$cy"
    "$probe" cover $((cx + left)) $((y + top)) $((w / 2)) "$h" &
    cover=$!
    changes covered && move $((cx + 10)) "$cy" && changes half
    gone=$?
    kill $cover && wait $cover 2> /dev/null
    cover=
    park && [ $gone -eq 0 ] && returns button
}

# The window "labels" is moved about by the checks below, each of which puts it back.
measure_labels() {
    locate labels 'CloseButton'
    close=($((x + 4)) $((y + 8)) $((w - 8)) $((h - 12)))
    locate labels 'Dragger'
    dragger_width=$w
    locate labels 'WindowHeader "Labels"'
    header_x=$x
    header_y=$y
    locate labels 'Window name "labels"'
    labels=("$x" "$y" "$w" "$h")
    grip_x=$((header_x + 150))
    grip_y=$((header_y + 2))
}

# Kept while the window has the focus; its round corners, which show what is behind, stay out.
keep_labels() {
    click "$grip_x" "$grip_y" && settle && keep title $((header_x + 10)) "$header_y" 90 14 && keep close "${close[@]}"
}

a_window_is_dragged_by_its_header() {
    keep_labels && drag "$grip_x" "$grip_y" $((grip_x - 40)) $((grip_y + 60)) && release || return 1
    appears title $((header_x - 30)) $((header_y + 60)) && ! is title && picture dragged || return 1
    drag $((grip_x - 40)) $((grip_y + 60)) "$grip_x" "$grip_y" && release && returns title
}

a_window_dragged_far_left_comes_back() {
    # Held near the end of the header, until the mouse is off the program's window.
    local hold=$((header_x + dragger_width - 4)) outside=$((4 - left)) back=$((20 - dragger_width - labels[0]))
    local end=$((close[0] + close[2] - 12))
    keep_labels && keep header_end $end "${close[1]}" 12 "${close[3]}" || return 1
    drag "$hold" "$grip_y" "$outside" "$grip_y" || return 1
    appears header_end $((end + outside - hold)) "${close[1]}" && release || return 1
    appears header_end $((end + back)) "${close[1]}" && settle && picture dragged-left || return 1
    drag $((hold + back)) "$grip_y" "$hold" "$grip_y" && release && returns close
}

a_window_dragged_far_down_comes_back() {
    local outside=$((900 - top - 2)) back=$((height - 20 - labels[1]))
    keep_labels && drag "$grip_x" "$grip_y" "$grip_x" "$outside" && changes title 500 || return 1
    ! is title $((header_x + 10)) $((header_y + back)) && release || return 1
    appears title $((header_x + 10)) $((header_y + back)) && settle && picture dragged-down || return 1
    # What the window covers else, for the check of its close button.
    keep uncovered "${labels[@]}"
    drag "$grip_x" $((grip_y + back)) "$grip_x" "$grip_y" && release && returns title
}

# A cursor is printed as its hash, and width and height of what is opaque.
a_border_changes_the_cursor() {
    local across down corner w h name
    local right=$((labels[0] + labels[2] - 3)) bottom=$((labels[1] + labels[3] - 3))
    park && "$probe" wait-cursor "$arrow" > "$kept/cursor" || return 1
    move "$right" $((labels[1] + 200))
    across="$("$probe" wait-cursor-not "$arrow")" || return 1
    read -r name w h <<< "$across"
    ((w > h)) || return 1
    move $((labels[0] + 200)) "$bottom"
    down="$("$probe" wait-cursor-not "$arrow" "$name")" || return 1
    read -r _ w h <<< "$down"
    ((h > w)) || return 1
    move "$right" "$bottom"
    corner="$("$probe" wait-cursor-not "$arrow" "$name" "${down%% *}")" || return 1
    [ -n "$corner" ] && move $((labels[0] + 200)) $((labels[1] + 200)) && "$probe" wait-cursor "$arrow" > "$kept/cursor"
}

a_drag_on_the_border_resizes() {
    local right=$((labels[0] + labels[2] - 3)) bottom=$((labels[1] + labels[3] - 3))
    local middle_x=$((labels[0] + 200)) middle_y=$((labels[1] + 200))
    keep_labels && keep edge $((labels[0] + 60)) $((bottom - 12)) 60 10 || return 1
    drag "$right" "$middle_y" $((right - 60)) "$middle_y" && release || return 1
    appears close $((close[0] - 60)) "${close[1]}" && ! is close && is title || return 1
    drag "$middle_x" "$bottom" "$middle_x" $((bottom + 40)) && release || return 1
    appears edge $((labels[0] + 60)) $((bottom + 28)) && ! is edge && settle && picture resized || return 1
    drag $((right - 60)) $((bottom + 40)) "$right" "$bottom" && release && returns close && returns edge
}

the_close_button_hides_the_window() {
    keep_labels && ! is uncovered || return 1
    click $((close[0] + close[2] / 2)) $((close[1] + close[3] / 2)) && returns uncovered && settle && picture closed
}

# The page "Windows" is opened from the index; what it opens lies over the middle of the gallery's window.
the_index_opens_a_page() {
    locate pages 'ToggleButton "Windows"'
    opener=("$cx" "$cy")
    settle && keep middle $((width / 2 - 20)) $((height / 2 - 20)) 40 40 && click "$cx" "$cy" && changes middle &&
        read_tree_again && settle && picture page || return 1
    locate windows 'Static name "windows status"'
    answer=("$x" "$y" "$w" "$h")
    locate windows 'Button "Ask and wait..."'
    ask=("$cx" "$cy")
}

# open_modal: the look of the middle without it is kept.
open_modal() {
    keep middle $((width / 2 - 20)) $((height / 2 - 20)) 40 40 && keep answer "${answer[@]}" && click "${ask[@]}" &&
        changes middle
}

# The frames that show the modal window run inside of the button's callback.
a_modal_window_takes_all_input_while_the_scene_goes_on() {
    settle && open_modal && read_tree_again || return 1
    locate unsaved 'Button "Discard"'
    keep discard "$x" "$y" "$w" "$h" && click "$marker_x" "$marker_y" && move "$cx" "$cy" && changes discard &&
        is marker || return 1
    project_box 0 0 "$sw" "$sh"
    xdotool key space
    keep scene "$bx" "$by" "$bw" "$bh" && changes scene 2000 && keep scene "$bx" "$by" "$bw" "$bh" &&
        changes scene 2000 && picture modal || return 1
    xdotool key space
    press && release && returns middle && changes answer && settle
}

a_modal_window_ends_by_its_close_button() {
    settle && open_modal || return 1
    locate unsaved CloseButton
    click "$cx" "$cy" && returns middle && changes answer && settle
}

a_popup_closes_at_a_press_beside_it() {
    locate windows 'Button "Popup"'
    local beside_y=$((y + h + 16))
    settle && keep below "$cx" $beside_y 60 20 && click "$cx" "$cy" && changes below || return 1
    click $((cx + 10)) $((beside_y + 10)) && settle && ! is below && picture popup && park && press && release &&
        returns below
}

# --- Pages from files ---

# to_page <caption>: over the other pages.
to_page() {
    locate pages "ToggleButton \"$1\""
    click "$cx" "$cy" && settle
}

# Each opens over those before.
files_open_as_pages() {
    local page
    for page in "Scroll pane" "Scroll bars" Row Dialog; do
        locate pages "ToggleButton \"$page\""
        keep page "$x" "$y" "$w" "$h" && click "$cx" "$cy" && changes page || return 1
    done
    settle && read_tree_again && picture pages
}

# keep_lines: some lines of the scroll pane, by their numbers, and where it is; the tree shows it before all scrolling.
keep_lines() {
    local number
    locate scrollpane ScrollPaneView
    view=("$x" "$y" "$w" "$h")
    pane=("$cx" "$cy")
    for number in 1 4 5; do
        locate scrollpane "Static \"Line $number\""
        line_x=$x
        line_y[number]=$y
        keep "line$number" "$x" "$y" "$w" "$h"
    done
    line_step=$((line_y[5] - line_y[4]))
}
# scrolled <number> <by>: the line shows, so far above its first place.
scrolled() { appears "line$1" "$line_x" $((line_y[$1] - $2)); }

a_scroll_pane_scrolls_by_wheel_track_and_thumb() {
    to_page "Scroll pane" && keep_lines || return 1
    locate scrollpane ScrollBarThumb
    wheel down 2 "${pane[@]}" && scrolled 5 80 && wheel up 2 "${pane[@]}" && scrolled 1 0 || return 1
    # A page is what is in view, to the nearest step of 8. Nothing of before shows then; the wheel goes back a little.
    click "$cx" $((view[1] + view[3] - 40)) && changes line1 && wheel up 2 "${pane[@]}" &&
        scrolled 4 $(((view[3] + 4) / 8 * 8 - 80)) && click "$cx" $((y + 1)) && scrolled 1 0 || return 1
    drag "$cx" "$cy" "$cx" $((cy + 60)) && changes line1 && release && settle && ! is line1 &&
        picture scrolled || return 1
    drag "$cx" $((cy + 60)) "$cx" $((cy - 40)) && scrolled 1 0 && release && scrolled 1 0
}

# The line of the button goes, and the next one takes its place.
a_button_in_a_scrolled_pane_works() {
    wheel down 2 "${pane[@]}" && scrolled 5 80 || return 1
    locate scrollpane 'Button "Done"'
    click "$cx" $((cy + 3 * line_step - 80)) && scrolled 5 $((80 + line_step)) && settle && picture line-done
}

a_scroll_bar_is_stepped_by_its_buttons() {
    to_page "Scroll bars" || return 1
    locate scrollbars 'Static name "value"'
    keep value "$x" "$y" "$w" "$h"
    locate scrollbars ScrollBarThumb
    keep thumb "$x" "$y" "$w" "$h"
    locate scrollbars 'HorzScrollBar name "bar"'
    click $((x + w - 8)) "$cy" && changes value && settle && ! is thumb || return 1
    click $((x + 8)) "$cy" && returns value && settle && is thumb
}

# All of a row's items grow alike.
a_layout_follows_the_border_of_its_window() {
    to_page Row || return 1
    locate row 'Window name "row"'
    local right=$((x + w - 3)) middle=$((y + 60))
    locate row 'Button "Item 1"'
    local first=$((x + w - 12)) first_y=$y
    keep first $first "$y" 12 "$h"
    locate row 'Button "Item 4"'
    local last=$((x + w - 12))
    keep last $last "$y" 12 "$h" && drag "$right" $middle $((right + 60)) $middle && release || return 1
    appears first $((first + 15)) $first_y && appears last $((last + 60)) "$y" && settle && ! is last &&
        picture row || return 1
    drag $((right + 60)) $middle "$right" $middle && release && returns first && returns last
}

# The first button opens a modal window, which answers; the other one makes a check box.
a_function_of_a_file_changes_its_page() {
    to_page Dialog || return 1
    locate dialog 'Static name "answer"'
    keep answer "$x" "$y" "$w" "$h"
    keep middle $((width / 2 - 20)) $((height / 2 - 20)) 40 40
    locate dialog 'Button "Ask"'
    click "$cx" "$cy" && changes middle && picture question && xdotool key Tab Return && changes answer &&
        returns middle || return 1
    locate dialog 'Panel name "more"'
    keep more "$x" "$y" 100 24
    locate dialog 'Button "Grow"'
    click "$cx" "$cy" && changes more && settle && ! is more && picture grown
}

# --- Looks and files that change ---

f11_switches_between_dark_and_light() {
    locate controls 'Window name "controls"'
    settle && keep dark "$x" "$y" "$w" "$h" && xdotool key F11 && changes dark 50000 && picture light || return 1
    xdotool key F11
    returns dark && settle
}

escape_ends_the_program() {
    xdotool key Escape
    left=0 top=0 returns black && await ended && wait "$program" && program=
}
ended() { ! kill -0 "$program" 2> /dev/null; }

# In a run of its own. The window manager's request reaches the frames inside, which end first.
closing_the_program_while_a_modal_window_waits_ends_it() {
    start_gallery closing
    "$probe" wait-still "$left" "$top" $width $height || give_up "the gallery does not stand still"
    keep page "${answer[@]}" && click "${opener[@]}" && changes page && open_modal || return 1
    "$probe" close "$window" && left=0 top=0 returns black && await ended && wait "$program" && program= &&
        "$gallery" --replay "$out/closing.rec" --back-end trace --out "$out/closing" > "$out/closing-replay.log" 2>&1
}

# save <file> <what sed does to it>
save() {
    sed "$2" "$live/$1" > "$kept/edited" && cp "$kept/edited" "$live/$1"
}

# In a run of its own, with copies of the files.
edits_of_files_show_while_the_program_runs() {
    local live="$kept/live" button
    mkdir -p "$live/gallery" && cp -r assets/skins "$live" && cp assets/gallery/scrollpane.lua "$live/gallery" ||
        return 1
    start_gallery live "$live"
    "$probe" wait-still "$left" "$top" $width $height || give_up "the gallery does not stand still"
    to_page "Scroll pane" || return 1
    local log="$out/live.log"
    read_tree_again && keep_lines || return 1
    locate scrollpane 'Button "To the end"'
    button=("$x" "$y" "$w" "$h")
    wheel down 2 "${pane[@]}" && scrolled 5 80 && settle && keep look "${button[@]}" &&
        keep below $((width / 2 - 100)) $((height - 56)) 200 20 || return 1

    save skins/dark.lua 's/control = { released = "[^"]*"/control = { released = "0x8a2a3cff"/'
    changes look 500 && keep look "${button[@]}" && keep lines "${view[@]}" && cp "$live/skins/dark.lua" "$kept/good" &&
        picture skin-edited || return 1
    # The first panel alone would be told from none, so another text must change it.
    save skins/dark.lua 's/^SkinTablesConstant = .*/& + nil/'
    changes below 3000 && keep error $((width / 2 - 470)) $((height - 56)) 940 20 && is look &&
        picture skin-broken || return 1
    save skins/dark.lua 's/^Skin = .*/& }/'
    changes error 100 && is look && is lines || return 1
    cp "$kept/good" "$live/skins/dark.lua"
    returns below && is look && is lines || return 1

    save gallery/scrollpane.lua 's/"To the end"/"Downwards"/'
    changes look && returns lines && scrolled 5 80 && picture page-edited && escape_ends_the_program
}

# Twice: the widgets must end up as in the session, and the frames must be the same.
a_replay_ends_as_the_session_did() {
    local run
    for run in first second; do
        "$gallery" --replay "$out/session.rec" --back-end trace --out "$out/$run" > "$out/$run-replay.log" 2>&1 &&
            grep -q 'the widget tree is the recorded one' "$out/$run-replay.log" || return 1
    done
    cmp "$out/first/trace.txt" "$out/second/trace.txt"
}

failed=()
check() {
    local start=$SECONDS
    if "$1"; then
        echo "ok      ${1//_/ } ($((SECONDS - start)) s)"
        return
    fi
    picture "failed-$1"
    failed+=("$1")
    echo "FAILED  ${1//_/ } ($((SECONDS - start)) s): $out/failed-$1.png shows the screen"
    release
    park
    kill -0 "$program" 2> /dev/null || give_up "the gallery ended too early; see $out/session.log"
}

# Each step, for whoever looks into a failure.
exec 9> "$out/steps.log"
BASH_XTRACEFD=9
PS4='+ $SECONDS s: '
set -x
start_server
start_gallery session
read_tree
measure_labels
echo "ready on display $DISPLAY after $SECONDS s"

check a_click_on_a_button_changes_a_label
check a_press_dragged_out_changes_nothing
check a_press_dragged_out_and_back_counts
check the_hover_look_goes_when_the_mouse_leaves_the_program
check the_hover_look_goes_under_another_window
check a_tooltip_shows_and_hides
check tab_moves_the_focus
check a_toggle_changes
check a_check_box_changes
check a_radio_group_has_one_choice
check a_surface_in_the_scene_takes_the_mouse
check a_window_is_dragged_by_its_header
check a_window_dragged_far_left_comes_back
check a_window_dragged_far_down_comes_back
check a_border_changes_the_cursor
check a_drag_on_the_border_resizes
check the_close_button_hides_the_window
check the_index_opens_a_page
check a_modal_window_takes_all_input_while_the_scene_goes_on
check a_modal_window_ends_by_its_close_button
check a_popup_closes_at_a_press_beside_it
check files_open_as_pages
check a_scroll_pane_scrolls_by_wheel_track_and_thumb
check a_button_in_a_scrolled_pane_works
check a_scroll_bar_is_stepped_by_its_buttons
check a_layout_follows_the_border_of_its_window
check a_function_of_a_file_changes_its_page
check f11_switches_between_dark_and_light
check escape_ends_the_program
check a_replay_ends_as_the_session_did
check closing_the_program_while_a_modal_window_waits_ends_it
check edits_of_files_show_while_the_program_runs

echo "$SECONDS s"
if [ ${#failed[@]} -gt 0 ]; then
    echo "failed: ${failed[*]}"
    exit 1
fi
