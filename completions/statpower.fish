# Completion of statpower for fish. Which words may stand next the program says itself, from its catalogue.
function __statpower_words
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    $words[1] complete $words[2..-1] 2>/dev/null
end
complete --command statpower --arguments '(__statpower_words)'
