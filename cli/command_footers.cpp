#include "cli/command_footers.h"

namespace dravik {

const char* const programFooter =
    R"(Results go to standard output, everything else to standard error. Nothing ever asks a question.
`dravik-cli COMMAND --help` explains a command.

Exit codes:
  0    all done
  1    some item failed; each is named on standard error
  2    the command line is wrong
  3    refused before any change
  130  interrupted; nothing is half-written)";

const char* const scanFooter =
    R"(Mono files that belong to one take are one line. A folder is looked at without its sub-folders.
The exit code is 1 when a file cannot be read as audio, or a WAV file is cut off.

Examples:
  dravik-cli scan /media/card/2024Y05M14D
  dravik-cli scan --json day1 day2 | jq '.groups[] | select(.circled) | .name'
  dravik-cli scan --no-group take7_*.wav)";

const char* const showFooter = R"(Examples:
  dravik-cli show 12A-T03.WAV
  dravik-cli show --json 12A-T03.WAV | jq .chunks
  dravik-cli show --ixml 12A-T03.WAV > 12A-T03.xml)";

const char* const setFooter =
    R"(A folder stands for all its takes, a file of a mono set for the whole set (unless --no-group).
Everything is checked before the first file is touched. The audio stays as it is, to the byte. Beside what you set, the
circled and wild states that a file has are written in the one way that every program reads.
Frame rates: 23.976, 24, 25, 29.97, "29.97 DF", 30, or another whole number.

Examples:
  dravik-cli set --scene 12A --take 3 12A-T03.WAV
  dravik-cli set --circled --note "Best for sound" T05_01.WAV
  dravik-cli set --track 1=Boom --track 2="Lav Anna" T05_01.WAV
  dravik-cli set --channel 1=2 --channel 2=1 T05_01.WAV
  dravik-cli set --timecode 10:12:44:03 --framerate 25 wild.wav
  dravik-cli set --project "The Long Tide" --dry-run /media/card/day1
  dravik-cli set --name 12B-T03 12A-T03.WAV)";

const char* const cuesFooter =
    R"(Without an edit the markers are listed. Numbers are those of the list, as they are before the edit;
frames are sample frames from the start of the file. Markers are stored in the order of their frames.

Examples:
  dravik-cli cues take.wav
  dravik-cli cues take.wav --add 48000=Slate --add 96000
  dravik-cli cues take.wav --remove 2 --rename 1="Second slate"
  dravik-cli cues take.wav --clear --dry-run)";

const char* const demoFooter =
    R"(Poly files and mono sets, circled and wild takes, notes, markers, three frame rates. The same seed gives
the same day. A file that exists is never written over: the command is refused.

Examples:
  dravik-cli demo demo-day
  dravik-cli demo --takes 2000 --seed 7 many)";

const char* const recoverFooter =
    R"(Unfinished renames are finished or rolled back, temporary files of dead processes removed. `scan` and `set`
do the same for the folders they open.

Example:
  dravik-cli recover /media/card/day1)";

const char* const updateCheckFooter =
    R"(Asks the update server, over HTTPS and the system's proxy, and changes nothing. Exit code 0 when the server has
answered, whether or not there is an update.

Examples:
  dravik-cli update-check
  dravik-cli update-check --json | jq -r 'select(.updateAvailable) | .latest.version')";

const char* const reorderFooter =
    R"(Writes a new file "_order" beside each poly file, and for a mono set new files "_order_01", "_order_02"...
Tracks are numbered from 1 and anew in their new order. The sources stay as they are, no file is written over.
A folder stands for all its takes that can be reordered, a file of a mono set for the whole set.

Examples:
  dravik-cli reorder --order 2,1 12A-T03.WAV
  dravik-cli reorder --order 3,1,2 --preserve-track-numbers --dest sorted SC12_T01.wav)";

const char* const deleteTracksFooter =
    R"(Writes a new file "_del" beside each poly file. The tracks that remain keep their order and their numbers.

Example:
  dravik-cli delete-tracks --tracks 3,4 12A-T03.WAV)";

const char* const splitFooter =
    R"(Writes a mono file "_split_T01_Boom" for each track, named by its number and its name. What no card takes in a file
name is "_".

Examples:
  dravik-cli split 12A-T03.WAV
  dravik-cli split --tracks 1,3 --dest monos /media/card/day1
  dravik-cli split --tracks none --stereo-1-2 12A-T03.WAV)";

const char* const mergeFooter =
    R"(Writes one poly file "_merge" for each mono set. Any of its files stands for the whole set. The files must have one
format and one length. Metadata is that of the first file, with the tracks of all; files that do not begin at the same
time are merged, and it is said.

Examples:
  dravik-cli merge SC12_T01.wav
  dravik-cli merge --exclude SC12_T04.wav --dest poly /media/card/day1)";

const char* const exportFooter =
    R"(A take becomes one new file: its tracks as routed, at another rate or depth if asked for, with its metadata brought
up to date (WAV), or as a listening copy (MP3, AAC in M4A). Nothing is ever clipped: audio that does not fit is refused,
as is audio beyond full scale in MP3 and AAC. Rates up to 768000.

Routes (tracks from 1): poly; mono:3; mono:1+2@-6 adds two tracks, each at -6 dB (-3 if nothing is said); stereo:1,2.
Default: all tracks for WAV, else tracks 1 and 2, or the only one.
A new file beside its take is called "_export"; in another folder it has the take's name. Where that name is taken,
"-1", "-2" is put behind the take's name.

Examples:
  dravik-cli export --format wav --rate 48000 --depth 24 --dest delivery /media/card/day1
  dravik-cli export --format wav --depth 16 --route stereo:1,2 --dither-seed 7 12A-T03.WAV
  dravik-cli export --format mp3 --bitrate 192 --route mono:1+2 --dest dailies /media/card/day1)";

const char* const renameFooter =
    R"(New names are put together from a pattern: {originalName} {project} {trackName} {scene} {take} {tape}
{startTimecode} {recordingDate} {circled} {wild} {fps} {bits} {sampleRate}, and free text between them. "_" and "-" are
separators: they go when the token beside them is empty for a file. {text:A_B} is text that keeps its own. Extensions
stay. A folder stands for all its files, a file of a mono set for the whole set (unless --no-group).
All names are checked first: one that is taken, given twice or impossible refuses the whole run. Either all files get
their new names or none does.

Examples:
  dravik-cli rename --pattern "{scene}_{take}_{trackName}" --dry-run /media/card/day1
  dravik-cli rename --pattern "{recordingDate}_{scene}T{take}_{circled}" 12A-T03.WAV
  dravik-cli rename --pattern "{project}-{originalName}" --copy-to delivery /media/card/day1)";

const char* const completionsFooter =
    R"(An installed Dravik completes by itself. This is for one that is not:
  source <(dravik-cli completions bash)      in ~/.bashrc
  source <(dravik-cli completions zsh)       in ~/.zshrc, behind compinit
  dravik-cli completions fish | source       in ~/.config/fish/config.fish)";

const char* const reportFooter =
    R"(The day's paper for editorial: "FOLDER_SoundReport.pdf" and ".csv", one line a file. Where a name is taken, both get
"-1", "-2" behind the folder's name. Without --pdf or --csv both are written. What is not given is taken from the
files: production (their project), tape, frame rate, sample rate and bit depth. The paper is A4 or Letter, by LC_PAPER.

Columns, beside the file's name: tape, scene, take, circled, wild, notes, channel, duration, tcStart, tcEnd,
frameRate, bitDepth, sampleRate, size, format. Default: all but tape, size and format.

Examples:
  dravik-cli report --dest paper /media/card/day1
  dravik-cli report --pdf --dest . --work-title "The Long Tide" --sound-mixer "A. Weir" --reference "-20 dBFS" day1
  dravik-cli report --csv --columns scene,take,circled,tcStart --dest . day1)";

}  // namespace dravik
