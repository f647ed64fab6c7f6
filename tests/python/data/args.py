import sys
print("args:", sys.argv[1:], "kept:", kept)
