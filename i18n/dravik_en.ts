<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>dravik::AboutWindows</name>
    <message>
        <source>windows, settings, network</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>letter case of file names</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>text formatting</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>logging</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keyboard Shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keyboard shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Dravik</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Third-Party Licenses</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik stands on these libraries, with thanks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Third-party licenses</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading what the update server says</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&lt;h2&gt;Dravik %1&lt;/h2&gt;&lt;p&gt;Build %2, commit %3&lt;/p&gt;&lt;p&gt;Metadata of production sound: see takes instead of files,&lt;br&gt;correct them, and lose nothing.&lt;/p&gt;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading and writing M4A</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading AIFF, CAF, FLAC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>reading MP3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>writing MP3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sample rates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>audio output</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::CheckBar</name>
    <message>
        <source>All tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check all tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck all tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck all files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check all documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck all documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check all takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Uncheck all takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::CheckTable</name>
    <message>
        <source>Space checks or unchecks what is selected</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::ContentView</name>
    <message>
        <source>Interrupted Work Was Put Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Critical Rename Recovery Needed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be reached. What is shown is what was read before.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder Not Found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not there, or cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wait until saving is done, or cancel it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unsaved modifications</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to save your changes before quitting?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to save your changes before continuing?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard changes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New files are being made</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do you want to stop and quit? Files that are complete stay; the one in progress is taken back.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep Working</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop and Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” does not answer.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is open; one folder is shown at a time.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing to Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None of these is an audio file that Dravik can open.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n take(s) with unsaved changes not in the folder any more. The changes are kept.</source>
        <translation>
            <numerusform>%n take is with unsaved changes not in the folder any more. The changes are kept.</numerusform>
            <numerusform>%n takes are with unsaved changes not in the folder any more. The changes are kept.</numerusform>
        </translation>
    </message>
    <message>
        <source>Multiple folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Group Mono Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save changes before changing mono grouping.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mono Group Detection Disabled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik will now treat mono files individually.

Be careful when editing metadata: files that belong to the same take may become inconsistent if only one mono file is modified.

Re-enable Group Mono Files to edit detected mono sets together.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Don&apos;t show again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard All Unsaved Changes?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik will revert all pending metadata, track name and cue changes. This cannot be undone.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::Counted</name>
    <message numerus="yes">
        <source>%Ln take(s)</source>
        <translation>
            <numerusform>%Ln take</numerusform>
            <numerusform>%Ln takes</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s)</source>
        <translation>
            <numerusform>%Ln file</numerusform>
            <numerusform>%Ln files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln track(s)</source>
        <translation>
            <numerusform>%Ln track</numerusform>
            <numerusform>%Ln tracks</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln audio file(s)</source>
        <translation>
            <numerusform>%Ln audio file</numerusform>
            <numerusform>%Ln audio files</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln document(s)</source>
        <translation>
            <numerusform>%Ln document</numerusform>
            <numerusform>%Ln documents</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>dravik::CounterView</name>
    <message>
        <source>Position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle timecode / elapsed time</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::CueList</name>
    <message>
        <source>Position</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Label</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cue %1 at %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cue markers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Double click or F2 to name a cue, Delete to delete it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position of a new cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add a cue at the typed position (Return)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not a position in this take (%1 to %2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Timecode, or minutes and seconds from the start; Return adds a cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Cue Name…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Cue</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::CueNames</name>
    <message>
        <source>Cue %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::Dialogs</name>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::ExportChoice</name>
    <message>
        <source>Mono</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stereo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Poly WAV</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>16-bit PCM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>24-bit PCM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>32-bit float</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>−3 dB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>−6 dB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Original</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 kHz</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::ExportForm</name>
    <message>
        <source>Channels</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What becomes of the tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format of the new files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bit depth</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>How exactly samples are stored</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bit rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>More is better, and larger</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Format:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>C&amp;hannels:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample &amp;rate:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Track</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The track that becomes the file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mixed with</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A second track, averaged with the first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Level of the mix</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Level of each of the two tracks in the mix</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Track:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Mixed with:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Level:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The track on the left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The track on the right</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Left:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R&amp;ight:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A take of one track is exported as mono.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>All, in their order</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Bit depth:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 — not in this take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Bit rate:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample rate of the new files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files of this format keep the rate of the take</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::Fader</name>
    <message>
        <source>Drag, with Shift finely; double click for 0 dB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 dB</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::FloatingWindow</name>
    <message>
        <source>Mixer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transport</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Always on Top</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::FolderBrowser</name>
    <message>
        <source>Folder browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Volumes and folders</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Progress of the copy</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop copying; what was copied is removed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel copying</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Home</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1
%2 free of %3</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::FolderCommands</name>
    <message>
        <source>Eject Refused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Eject Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Folder Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename Refused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move to Trash Refused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move “%1” to the Trash?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The folder %1 goes there with everything in it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move to Trash Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate Refused</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copying “%1”…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copying was cancelled; nothing is left of the copy.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New files are being made. “%1” can be changed when that is done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” is being saved into. It can be changed when that is done.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” holds takes with unsaved changes. Save or discard them first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Takes of “%1” are shown beside others with unsaved changes. Save or discard them first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>“%1” is being copied. “%2” can be changed when that is done, or cancelled.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::FolderTree</name>
    <message>
        <source>Name of the folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Eject (%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::FolderTreeModel</name>
    <message>
        <source>%1, open</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::LevelMeter</name>
    <message>
        <source>Level of the file&apos;s own samples. Click to clear the clip signs.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 dBFS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, clipped</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::MainMenu</name>
    <message>
        <source>Make one poly file of the mono files of a take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make mono files of the tracks of a poly file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make a poly file without some of its tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make a file with its tracks in another order</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Give files names made of their metadata</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make WAV, MP3 or AAC files of the takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make the sound report of the day</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save all pending changes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard all unsaved changes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a folder of recordings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show or hide the folder browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The table alone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The waveform of the selected take below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The monitoring mixer below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a recording and its folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read the folder again; unsaved changes stay</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Column</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy the current column of the selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste Column</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste lines downwards from the first selected row</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filter the takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Cell</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the current cell of the table (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Circle the selected takes, or take the circle away</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The value of the first selected row for all selected rows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each selected row gets the take after its own</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number Takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Count up from the first selected row&apos;s take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Group Mono Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the mono files of one take as one row</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Operations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Make new files of the takes, rename them, or report them</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show or hide the fields of the selected take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Playback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Third-Party Licenses…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>About Dravik</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toolbar</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save All (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check for Updates…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ask whether there is a newer version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What&apos;s New</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What has changed in this version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Contact Support</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Write a mail</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik Web Site</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open the web site</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::MainWindow</name>
    <message>
        <source>Saving...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saving... %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading was stopped: not all takes are shown. Reload reads them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1[*] – Dravik</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Selected: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid Timecode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The start timecode that you typed is not one: %1. It was not taken over.

Would you like to quit without it?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Looking for updates…</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%Ln take(s) with a warning</source>
        <translation>
            <numerusform>%Ln take with a warning</numerusform>
            <numerusform>%Ln takes with a warning</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>dravik::ManualWindow</name>
    <message>
        <source>Dravik Manual</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Search the manual</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pages</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Page</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Back</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Link Could Not Be Opened</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::MetersView</name>
    <message>
        <source>Meters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a take to see its levels.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Level of %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::MixerStrip</name>
    <message>
        <source>M</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mute</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>S</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Solo
Shift + Click Solo: Add/remove Solo in OR mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Solo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reverse Polarity</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fader in dB; type a value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Link</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Hear this channel left and the next one right, faders together</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>M/S monitoring - Option-click to activate SM or switch MS/SM</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width of the M/S pair</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pan</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fader</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fader value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>M/S</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pan disabled during M/S monitoring</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pan: drag, with Shift finely; double click for the centre</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Width %1%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Level</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::MixerView</name>
    <message>
        <source>Mixer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a take to hear it.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationForms</name>
    <message>
        <source>Files to merge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks to split off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks to delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New order of the tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The checked takes whose tracks have the same names get the same choices</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preserve Track Numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Each track keeps its own number; otherwise they are numbered anew</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files get their new names where they are</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files stay; copies with the new names are made in another folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep Both wherever names collide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Names that collide get a number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep separators of empty values</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Otherwise the separator before a value that a file does not have goes, too</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Use for %Ln More Take(s)</source>
        <translation>
            <numerusform>Use for %Ln More Take</numerusform>
            <numerusform>Use for %Ln More Takes</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 cannot be read</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationItems</name>
    <message>
        <source>Scene %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationOverlay</name>
    <message>
        <source>succeeded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Results</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reveal</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the file in the file browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancelling…</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationPreview</name>
    <message numerus="yes">
        <source>%Ln file(s), about %1</source>
        <translation>
            <numerusform>%Ln file, about %1</numerusform>
            <numerusform>%Ln files, about %1</numerusform>
        </translation>
    </message>
    <message>
        <source>Nothing would be made</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%n take(s) cannot be used.</source>
        <translation>
            <numerusform>%n take cannot be used.</numerusform>
            <numerusform>%n takes cannot be used.</numerusform>
        </translation>
    </message>
    <message>
        <source>Select at least one split output.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select at least one track to remove.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>keeps its name</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) will be copied</source>
        <translation>
            <numerusform>%Ln file will be copied</numerusform>
            <numerusform>%Ln files will be copied</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) in the report</source>
        <translation>
            <numerusform>%Ln file in the report</numerusform>
            <numerusform>%Ln files in the report</numerusform>
        </translation>
    </message>
    <message>
        <source>Choose PDF, CSV, or both.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Created %Ln file(s).</source>
        <translation>
            <numerusform>Created %Ln file.</numerusform>
            <numerusform>Created %Ln files.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>dravik::OperationPreviewTable</name>
    <message>
        <source>Problem</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep Both</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Give the file a name that is free</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationTexts</name>
    <message>
        <source>Merge</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Files to Merge in this Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge requires compatible mono WAV files.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible current file or mono group.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible mono group found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merging Files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merge Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Poly WAV Files to Split in this Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split requires poly WAV files with multiple tracks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible current poly file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible poly file found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Splitting Files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Split Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Compatible Files for Track Deletion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Track deletion requires poly WAV files with multiple tracks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Deleting Tracks…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Tracks Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Tracks Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reorder Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Compatible Files for Track Reorder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reorder Tracks requires poly WAV files or mono groups with multiple tracks.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible current group.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible poly file or mono group found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reordering Tracks...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reorder Tracks Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reorder Tracks Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Compatible Files to Rename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a folder that contains audio files to rename.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Renaming Files…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Compatible Take to Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export requires a poly WAV, a mono WAV, or an existing mono group.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No compatible take found.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Exporting %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sound Report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No Files Available for Sound Report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a folder that contains audio files to build a report.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Document</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Generating Sound Report…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sound Report Complete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sound Report Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose an operation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Finish the current operation first</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Operation Completed with Errors</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationsModel</name>
    <message>
        <source>Choose a destination folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wait until saving is done, or cancel it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Unsaved modifications</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New files are made from what is on disk. Do you want to save your changes first?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save and Continue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationsRun</name>
    <message>
        <source>Operation Cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nothing was made.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 finished.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 succeeded.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::OperationsWindow</name>
    <message>
        <source>Create Report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy &amp;&amp; Rename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Operations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use All Takes of the Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Apply to all takes of the folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Otherwise to the takes that are selected in the main window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Destination…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Choose the folder that the new files go to</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Beside the Recordings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New files go into the folder of what they are made of</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files are renamed where they are; their contents stay as they are.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Beside the recordings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::PanControl</name>
    <message>
        <source>C</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>R %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::PatternChip</name>
    <message>
        <source>Drag to reorder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, block %2 of %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::PatternRow</name>
    <message>
        <source>Pattern of the new names</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click tokens below to put a name together, or type</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::PreferencesWindow</name>
    <message>
        <source>Amber</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Blue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Green</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Red</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Purple</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Graphite</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preferences</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Groups of settings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Appearance</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files and Editing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Listening</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Questions</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>As the system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Light</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Appearance:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Own</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Other...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A&amp;ccent colour:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Open the last folder when Dravik starts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Ask to save before another take is selected</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Otherwise unsaved changes stay with their rows, marked, until Save All.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>When &amp;paused:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>stay where the playhead is</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>go back to where playback began</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Solo:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>one channel, more with Shift</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>every click adds a channel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Nudge by:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 frame</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 second</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>5 seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Loop the take or the selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Keep the playhead in the middle of the waveform</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show &amp;elapsed time instead of timecode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Room for &amp;waveforms:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> MB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waveforms are kept so that a take shows at once the next time; those that were not used for the longest time go first.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> dB</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Bottom of the scale:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Warning from:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Alarm from:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the &amp;scale in the mixer of the main window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ask before a cue is &amp;deleted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warn when mono &amp;grouping is switched off</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check for &amp;updates automatically</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This build of Dravik was made without an update server.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::QtDialogs</name>
    <message>
        <source>Audio files (%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::RenamePatternEditor</name>
    <message>
        <source>Patterns</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Use or keep a pattern</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Available Tokens</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click to add to Filename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To Start From</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Pattern…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove Pattern</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Pattern</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name of the pattern:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A saved pattern of the same name is replaced.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::RenamePatterns</name>
    <message>
        <source>Scene_Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scene_Take_Track Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Project_Scene_Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tape_Start Timecode</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::ReportFormView</name>
    <message>
        <source>Report Notes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Columns</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Documents</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set as Default</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1:</source>
        <comment>the caption of a field</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Production</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Work Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Director</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sound Mixer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Custom…</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Custom %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reference Level</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample Rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bit Depth</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Always the first column</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Defaults</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill the form with what was kept</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>✓ Defaults Saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Keep what the form says for the next report; the tape is not kept</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>None</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>From the files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>From the files (%1)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::SaveFlow</name>
    <message>
        <source>Format Not Supported for Editing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik can open %1 files, but changes cannot be saved to this format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changes cannot be saved to these file formats: %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Would you like to discard your changes?</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>and %n more</source>
        <translation>
            <numerusform>and %n more</numerusform>
            <numerusform>and %n more</numerusform>
        </translation>
    </message>
    <message>
        <source>Takes Are Gone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Changes of takes that are not in the folder any more cannot be saved: %1.

Would you like to discard these changes?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Discard</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Saving was cancelled. %Ln file(s) saved; the other changes are still pending.</source>
        <translation>
            <numerusform>Saving was cancelled. %Ln file saved; the other changes are still pending.</numerusform>
            <numerusform>Saving was cancelled. %Ln files saved; the other changes are still pending.</numerusform>
        </translation>
    </message>
    <message>
        <source>Critical Rename Recovery Needed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save the Others</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Save of %Ln File(s)</source>
        <translation>
            <numerusform>Save of %Ln File</numerusform>
            <numerusform>Save of %Ln Files</numerusform>
        </translation>
    </message>
    <message>
        <source>Undo the Last Save?</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>The metadata, cues and names of %Ln file(s) will be put back as they were before it.</source>
        <translation>
            <numerusform>The metadata, cues and names of %Ln file will be put back as they were before it.</numerusform>
            <numerusform>The metadata, cues and names of %Ln files will be put back as they were before it.</numerusform>
        </translation>
    </message>
    <message>
        <source>Undo Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undoing the save was cancelled.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Save Was Not Undone</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The save was undone.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>Saved %n file(s)</source>
        <translation>
            <numerusform>Saved %n file</numerusform>
            <numerusform>Saved %n files</numerusform>
        </translation>
    </message>
    <message>
        <source>this file</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::Shortcuts</name>
    <message>
        <source>File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load Folder...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Load File...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reload Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save Changes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Preferences...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Quit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Undo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Redo</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Find</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle Circled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increment Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Operations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next Operations Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous Operations Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rename</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sound Report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waveform</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mixer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take Editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder Browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go to Browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go to Table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go to Editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Playback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play / Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Return to beginning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge backward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle solo mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shift + Click Solo: Add/remove Solo in OR mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loop playback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle follow playhead</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insertion Follows Playback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add cue at playhead</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Previous cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mixer Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meters Window</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Floating Transport</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Keyboard Shortcuts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take table</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the cell</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>double click, or type a digit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Switch circled or wild</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a click on the mark</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Empty the column of the selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy the column of the selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy whole rows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste lines downwards</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Row above</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>First take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Last take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show all takes again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>While a cell is edited</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over, go down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over, go up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over, next cell</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over, cell before</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over for all selected rows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Leave the cell as it was</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show all takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Go to what was found</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fields of the take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Next field</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tab</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The start timecode as it was</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the name or number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>double click, or type</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over, next track</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Return while one is edited</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take over, track before</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy names, or numbers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Empty names</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cues</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit the name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>double click</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete the cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom in</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl and the wheel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Taller</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ctrl+Shift and the wheel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flatter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the whole take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>double click below</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear the selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>a click</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Folder browser</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move to Trash</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show in File Manager</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Eject</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Refresh</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik Manual</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::StatusLine</name>
    <message>
        <source>Progress</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TableEdits</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Project</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scene</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Note</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Circled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wild</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start TC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Track Names</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recorder Number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cues</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill Down %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increment Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number Takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The recorder numbers of this take cannot be edited now.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeCheckList</name>
    <message>
        <source>Takes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeColumns</name>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Circled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wild</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scene</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tape</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Project</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Note</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start TC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End TC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Samplerate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bits</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Size</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This column cannot be edited.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid Timecode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid Timecode: choose a frame rate first, which it is counted in.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name cannot be empty.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name cannot contain &quot;/&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A name cannot start with a dot: the file would be hidden.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No file can have this name, or it differs from the present one only in case.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This frame rate cannot be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This text cannot be written.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is not a RIFF/WAVE file inside: Dravik can open it, but not change it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be read as audio, and cannot be changed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>this file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik can open %1 files, but changes cannot be saved to this format.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files of this take are not in the folder any more. Its unsaved changes are kept until the files are back, or until you discard them.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <comment>files of a take, and their format</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, a track of this take, cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is cut off: %2 of its audio is missing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2 × %3</source>
        <comment>files of a take that can be read, of all, and their format</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be read as audio.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%Ln file(s) of this take not in the folder: the recorder says that it wrote %1.</source>
        <translation>
            <numerusform>%Ln file of this take not in the folder: the recorder says that it wrote %1.</numerusform>
            <numerusform>%Ln files of this take not in the folder: the recorder says that it wrote %1.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>dravik::TakeCues</name>
    <message>
        <source>The files of this take are gone.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cues of this format are read-only.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Cue?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Cue &quot;%1&quot;?

This action will be applied when you save the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Do not ask again</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Cue Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Leave the name empty to remove it.
This action will be applied when you save the file.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Cue</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeDelegate</name>
    <message>
        <source>W</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeEditor</name>
    <message>
        <source>mixed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take editor</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a take to see and edit its fields.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name of the project</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Scene, as on the slate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take number</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tape or sound roll</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A take to print</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wild track: no picture</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frame rate in which the timecode counts</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start TC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>fps</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start timecode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Frame rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>End TC</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A note has room for %L1 characters; the rest was left out.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Note of the sound mixer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cues</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks  %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cues  %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Start timecode, HH:MM:SS:FF or HHMMSSFF; Return takes it over</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A start timecode needs a frame rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Invalid Timecode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The start timecode of %1 was emptied, which is no timecode: it is as it was.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 is no timecode: the start timecode of %2 is as it was.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not saved; was mixed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not saved; was empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>not saved; was %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeFields</name>
    <message>
        <source>Edit %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeNames</name>
    <message>
        <source>Each take needs a name of its own: %1 would be the name of several.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Another take of this folder is called %1.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakePlayback</name>
    <message>
        <source>1 second</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>5 seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 frame</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeSummary</name>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Container</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Duration</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sample rate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bit depth</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recorded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Mixed dates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>in %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeTable</name>
    <message>
        <source>Filter takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show only takes that hold all of these words (%1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number of takes shown</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 The value is as it was.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files of a set are edited together, in the row of the set.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This text is too long to be edited here.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 of %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No take matches “%1”</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Press Escape to show all takes.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open a folder of recordings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Drop it here, choose it in the browser, or press %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading the folder...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading was cancelled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reload the folder to go on.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There are no audio files in this folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Its sub-folders are not looked through: choose one in the browser.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Wait until saving is done, or cancel it.</source>
        <translation type="unfinished"></translation>
    </message>
    <message numerus="yes">
        <source>%Ln take(s) left out: changes cannot be saved to their format.</source>
        <translation>
            <numerusform>%Ln take left out: changes cannot be saved to their format.</numerusform>
            <numerusform>%Ln takes left out: changes cannot be saved to their format.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%Ln take(s) left as it was: the value is not valid for %1.</source>
        <translation>
            <numerusform>%Ln take left as it was: the value is not valid for %1.</numerusform>
            <numerusform>%Ln takes left as it was: the value is not valid for %1.</numerusform>
        </translation>
    </message>
    <message>
        <source>%1 Nothing was changed.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 cannot be edited.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the rows to fill; the first one gives the value.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files of the first row do not agree: there is no value to fill.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select the rows to number; the first one keeps its take.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Copy Rows</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Paste into %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Fill Down %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Increment Take</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Number Takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle Circled</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle Wild</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Sort by %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Columns</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeTableModel</name>
    <message>
        <source>mixed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: %2</source>
        <comment>a column and its value</comment>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>empty</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>One file of the set %1, which is edited as a whole.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not saved yet. On disk: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>nothing</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The files of this take do not agree. Unfold it to see them.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TakeTableView</name>
    <message>
        <source>Takes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Columns of the takes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TimeLeft</name>
    <message>
        <source>%1 s left</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 min left</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TrackChecks</name>
    <message>
        <source>Needs two tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, will be deleted</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stereo — Tracks 1 + 2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks to delete</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TrackList</name>
    <message>
        <source>Rec</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Track %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>no name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recorder number of track %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>none</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1, not saved</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recorder number of track %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name of track %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Tracks</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Position in the take, channel number of the recorder, name.
Type or press Return to edit a name or number; Return and Tab go on to the next one.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>A recorder number cannot be emptied, only changed.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TrackNames</name>
    <message>
        <source>Loading... %1%</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Track %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TrackOrderList</name>
    <message>
        <source>Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Original Order</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the track up (Alt+Up)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move the track down (Alt+Down)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Put the tracks back into the order that they have</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TrackOrderModel</name>
    <message>
        <source>was %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1
Drag to reorder, or Alt+Up and Alt+Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 %2, was %3</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TrackOrderView</name>
    <message>
        <source>Order of the tracks</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TransportActions</name>
    <message>
        <source>Nudge by</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Frame</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 Second</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>5 Seconds</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::TransportBar</name>
    <message>
        <source>Transport</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Return to beginning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge backward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Play</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge forward</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Solo mode (S)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle solo mode</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loop playback (L)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Loop playback</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Playback page/scroll (F)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Toggle follow playhead: by pages, or scrolling under it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Insertion Follows Playback (N)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pausing leaves the position where it is, rather than going back to where it began</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Boost</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output boost</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Makes the output louder or quieter, not the files. Double click for 0 dB.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge by 1 Frame</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge by 1 Second</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge by 5 Seconds</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Pause</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Return to beginning (Home)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge backward: %1
Right click to choose how far</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Nudge forward: %1
Right click to choose how far</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::UpdateFlow</name>
    <message>
        <source>Unable to Check for Updates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik couldn&apos;t connect to the update server. Please check your internet connection and try again.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik is up to date</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>You&apos;re running the latest version of Dravik</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Update Could Not Be Downloaded</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Web Site Could Not Be Opened</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This build of Dravik was made without an update server.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Support Could Not Be Contacted</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::UpdatePresentation</name>
    <message>
        <source>You are currently using version %1 (Build %2)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This Mac is currently running macOS %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This computer is currently running %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik %1 is available</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Download Update</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Later</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Dravik %1 requires macOS %2 or later.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the required macOS version</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Released %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>What&apos;s New in Dravik %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::UpdateSheet</name>
    <message>
        <source>Release notes</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>dravik::WaveformView</name>
    <message>
        <source>Select a take to see its waveform.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reading the audio...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This take holds no audio.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Waveform</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit Cue Name...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Delete Cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Cue</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom to Selection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show Whole Take</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
