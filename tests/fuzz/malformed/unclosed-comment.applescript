(* (* *)
return 1