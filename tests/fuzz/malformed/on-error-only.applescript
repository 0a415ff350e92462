on error m number n
end try