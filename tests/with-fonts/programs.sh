#!/usr/bin/env bash
# programs.sh APP PROGRAM - has a real program (libreoffice, inkscape) export a document to PDF, whose fonts only the library has:
# on its own it embeds substitutes, with with-fonts the right fonts. APP is the folder of the built programs.
set -euo pipefail

app=$1 program=$2
samples=$(cd "$(dirname "$0")/../docfonts/samples" && pwd)
work=$(mktemp -d -t programs.XXXXXX)
trap 'rm -rf "$work"' EXIT
fail() { echo "programs: $*" >&2; exit 1; }

# export_to FOLDER [COMMAND ...]: runs the program behind the words of the command.
case $program in
  libreoffice)
    document=text.odt expected=$'LiberationSerif\nLiberationSerif-Italic\nNimbusSansBold'
    export_to() { "${@:2}" soffice --headless --convert-to pdf --outdir "$1" "$samples/$document"; }
    ;;
  inkscape)
    document=drawing.svg expected=NimbusSans-Regular
    export_to() { "${@:2}" inkscape "$samples/$document" --export-filename="$1/${document%.*}.pdf"; }
    ;;
  *) fail "there is no test with '$program'" ;;
esac

# The names of the embedded fonts that the desktop does not have.
embedded() { pdffonts "$1/${document%.*}.pdf" | sed '1,2d; s/ .*//; s/^[A-Z]*+//; /^DejaVu/d' | sort; }

# A user with a desktop of one family, and a library.
export HOME=$work/home FONTCONFIG_FILE=$work/fonts.conf XDG_DATA_DIRS=$work/nothing
unset XDG_DATA_HOME XDG_STATE_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
mkdir -p "$HOME/Fonts" "$work/without" "$work/with"
cp /usr/share/fonts/opentype/urw-base35/NimbusSans-*.otf /usr/share/fonts/truetype/liberation2/LiberationSerif-*.ttf "$HOME/Fonts"
cat >"$FONTCONFIG_FILE" <<END
<fontconfig><dir>/usr/share/fonts/truetype/dejavu</dir><dir prefix="xdg">fonts</dir><cachedir>$work/cache</cachedir></fontconfig>
END

log=$work/log
export_to "$work/without" >"$log" 2>&1 || fail "$program can't export $document: $(tail -n1 "$log")"
export_to "$work/with" "$app/with-fonts/with-fonts" >"$log" 2>&1 || fail "$program fails with the fonts: $(tail -n1 "$log")"
found=$(embedded "$work/without")
[ -z "$found" ] || fail "without the fonts $document got" $found
found=$(embedded "$work/with")
[ "$found" = "$expected" ] || fail "$document got" ${found:-substitutes} "instead of" $expected
[ -z "$(fc-list | grep -v DejaVu)" ] || fail "the fonts of $document were not given back"
