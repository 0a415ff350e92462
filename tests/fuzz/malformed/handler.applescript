on run argv
    return item 1 of argv
end run