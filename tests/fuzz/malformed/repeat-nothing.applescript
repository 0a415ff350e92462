repeat with in of to
end repeat