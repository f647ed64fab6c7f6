# Run from gzsh's command line before the script: what it makes the script sees.
import sys
import zum

zum.node("/obj").create_node("geo", "fromfile")
print("startup.py ran as", sys.argv[0].rsplit("/", 1)[-1], "with", sys.argv[1:])
