print("a handle file that defines no template")
