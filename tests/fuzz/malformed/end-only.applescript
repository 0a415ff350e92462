end
end tell
end repeat