// GZ_PropertyMapDef: one row of a property map (a parameter and the property that provides it).
#pragma once

/// Plain pointers to strings the caller keeps alive. Channel 0 is the parameter name when
/// not given; renames start equal to the names.
class GZ_PropertyMapDef
{
public:
    static constexpr int NUM_CHANNELS = 4;

    GZ_PropertyMapDef(const char *parm = nullptr, const char *propertyClass = nullptr,
                      const char *property = nullptr, const char *ch0 = nullptr,
                      const char *ch1 = nullptr, const char *ch2 = nullptr,
                      const char *ch3 = nullptr)
        : myParm(parm), myPropFile(propertyClass), myProperty(property), myRename(parm),
          myCh{ch0 ? ch0 : parm, ch1, ch2, ch3}, myChRename{myCh[0], ch1, ch2, ch3}
    {
    }

    void setRename(const char *rename, const char *ch0, const char *ch1, const char *ch2,
                   const char *ch3)
    {
        myRename = rename;
        myChRename[0] = ch0;
        myChRename[1] = ch1;
        myChRename[2] = ch2;
        myChRename[3] = ch3;
    }

    const char *getParm() const { return myParm; }
    const char *getPropFile() const { return myPropFile; }
    const char *getProperty() const { return myProperty; }
    const char *getRename() const { return myRename; }
    const char *getCh(int i) const { return myCh[i]; }
    const char *getChRename(int i) const { return myChRename[i]; }

private:
    const char *myParm;
    const char *myPropFile;
    const char *myProperty;
    const char *myRename;
    const char *myCh[NUM_CHANNELS];
    const char *myChRename[NUM_CHANNELS];
};
