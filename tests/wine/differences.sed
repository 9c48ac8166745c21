# The lines in which the transcripts of one script may differ between the layer and Windows' own API, each made the
# same here; scripts/wine_wizard compares what is left.

# The layer is told by a step of the script that its diskette is write-protected; the test under Wine takes away the
# right to write.
/^> medium write-protected$/d
