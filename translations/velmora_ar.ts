<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ar" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>حول Velmora</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>مع Velmora يمكنك استكشاف هذا الكنز الهائل من الموسيقى كما تشاء.
اذكر اسم أغنية أو فنان تحبه
ودع Prism Project يقوم بالباقي.

سيبحث بسرعة في عالمه كله من الموسيقى المحللة، نحو قرن من التسجيلات – الجديدة والقديمة، المشهورة والمجهولة – ليجد أغاني تشبه اختيارك موسيقيًا.

ثم استرخ واستمتع بأغانيك المفضلة اليوم وغدًا.</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>تم</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>إنشاء محطة جديدة</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>المحطات</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>اذكر أحد فنانيك المفضلين
وسننشئ محطة تستكشف
هذا الجزء من عالم
الموسيقى.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>رموز/أرقام</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>كبيرة</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>أرقام</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>فنان أو أغنية</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>أدخل اسم فنان أو أغنية لإنشاء محطة جديدة</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>فشل البحث! حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>جارٍ البحث...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>فشل البحث، حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>لا نتائج لـ </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>النتائج: </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> حسب الفنان و </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> حسب الأغنية. أيهما تقصد؟</translation>
    </message>
    <message>
        <source> by </source>
        <translation> – </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>تعذر إنشاء المحطة، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>جارٍ التحميل...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>تعذر إنشاء المحطة لأن Velmora أرسلت بيانات غير صالحة!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>تعذر تحميل قائمة المحطات، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>فنان أو مقطع</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>إرسال كلمة السر</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>أدخل بريدك الإلكتروني
لتصلك كلمة السر.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>رموز/أرقام</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>كبيرة</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>أرقام</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>جارٍ إرسال كلمة السر...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>تعذر الحصول على كلمة السر بسبب خطأ في النظام!</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>راجع بريدك الإلكتروني لمعرفة كيفية استعادة كلمة سر Velmora.</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>رمز التفعيل</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>افتح الصفحة    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>واتبع التعليمات هناك لإنشاء حساب جديد.</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>رمز التفعيل:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>عند الانتهاء عد إلى هذه الشاشة واختر «متابعة».</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>متابعة</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>يرجى الانتظار...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>فعّل جهازك للمتابعة.</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>فشل تسجيل الدخول، حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>تعذر إنشاء رمز التفعيل!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>تعذر إنشاء رمز التفعيل، حاول مرة أخرى!</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>مسح</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>مسافة</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>حذف</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>تم</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>لوحة المفاتيح</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>تعذر الاتصال بـ Velmora!</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>حفظ هذا الفنان</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>حفظ هذه الأغنية</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>عدم تشغيل هذه الأغنية لمدة شهر</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>لماذا هذه الأغنية</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>إنشاء محطة جديدة</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>حذف هذه المحطة</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>إعادة تسمية هذه المحطة</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>تبديل الحساب</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>إنهاء Velmora</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>إغلاق القائمة</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>إلغاء</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>موافق</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <translation>RTL</translation>
    </message>
</context>
<context>
    <name>RenameStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>إعادة تسمية هذه المحطة</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>اذكر الاسم الجديد للمحطة
وسنغيّره في قائمة
محطاتك.</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>رموز/أرقام</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>كبيرة</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>أرقام</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>لم تتم إعادة التسمية لأنه لم يُدخل أي اسم.</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>هل تريد حقًا إعادة تسمية هذه المحطة إلى: 
⁨</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>تعذرت إعادة تسمية المحطة، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>جارٍ إعادة التسمية...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>تعذرت إعادة تسمية المحطة، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>جارٍ التحميل...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>تعذر تحميل قائمة المحطات!</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>تعذر تحميل قائمة المحطات، حاول لاحقًا!</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>اختر حساب Velmora أو أنشئ حسابًا.</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>حساب جديد</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>حذف</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>يرجى الانتظار...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>هل لديك حساب Velmora؟ </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>الحد الأقصى 5 حسابات. احذف حسابًا للمتابعة.</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>تعذر إنشاء رمز التفعيل!</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>تعذر إنشاء رمز التفعيل، حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>هل تريد حقًا حذف الحساب: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>جارٍ حذف الحساب...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>تعذر فصل الجهاز بسبب خطأ في الشبكة. حاول مرة أخرى لاحقًا!</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>فشل تسجيل الدخول، حاول مرة أخرى!</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>تسجيل الدخول إلى حساب Velmora</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>البريد:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>كلمة السر:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>رموز/أرقام</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>كبيرة</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>إرسال كلمة السر</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>أدخل حساب Velmora...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>لم يُدخل شيء. حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>يرجى الانتظار...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>فشل تسجيل الدخول، حاول مرة أخرى!</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>المحطات</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>إعلان</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>لم يعجبني</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>التالي</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>تشغيل</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>أعجبني</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>الفنان:</translation>
    </message>
    <message>
        <source>Album:</source>
        <translation>الألبوم:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>القائمة</translation>
    </message>
    <message>
        <source>Song History</source>
        <translation>سجل الأغاني</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>المحطة:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>للأسف تحدد تراخيص الموسيقى عدد الأغاني التي يمكنك تخطيها كل ساعة.</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       غير ممكن أثناء الإعلان</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>لا يمكن الإعجاب في المحطات المشتركة.</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>لا يمكن عدم الإعجاب في المحطات المشتركة.</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>أعجبني...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>تعذر حفظ رأيك، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>لم يعجبني...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>تعذر حفظ رأيك، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>تعذرت إضافة رأيك، حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>جارٍ إراحة الأغنية...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>تعذرت إراحة الأغنية، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>تعذرت إراحة الأغنية، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>تعذر حفظ الفنان، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>تعذر حفظ الأغنية، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>تم الحفظ!</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>تعذر الحفظ، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>تعذر الحصول على التفسير، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>تعذر الحصول على التفسير، حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>بناءً على ما أخبرتنا به حتى الآن، نشغّل </translation>
    </message>
    <message>
        <source> by </source>
        <translation> – </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation> لأنها تتميز بـ </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>تسمح Velmora بـ 100 محطة كحد أقصى، ولا يمكنك إنشاء المزيد!</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>لا يمكن حذف محطة Tapestry!</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>هل تريد حقًا حذف المحطة: 
⁨</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>⁩؟</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>لا يمكن حذف هذه المحطة!</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>جارٍ حذف المحطة...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>عذرًا، تعذر حذف المحطة، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>تعذر حذف المحطة، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>لا يمكن إعادة تسمية محطة Tapestry!</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>هل تريد حقًا إعادة تسمية المحطة: 
⁨</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>لا يمكن إعادة تسمية محطة مشتركة!</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>جارٍ التحميل...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>تعذر تشغيل الأغنية بسبب خطأ في النظام!</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>حدث خطأ في الشبكة. تحقق من الاتصال بالشبكة وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>تعذر تحميل قائمة التشغيل، حاول مرة أخرى!</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>تعذر تحميل قائمة التشغيل، حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>تعذر تحميل بيانات الإعلان!</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>تعذر تحميل بيانات الأغنية. حاول لاحقًا!</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>هذه المحطة تعمل الآن...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>حدث خطأ في الشبكة. تحقق من الاتصال بالشبكة وحاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>تخضع Velmora للصيانة. يمكنك الاستماع إلى محطاتك، لكن لا يمكنك إنشاء محطات أو إبداء الرأي أو تعديل حسابك حتى انتهاء الصيانة. شكرًا لصبرك.</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>عذرًا، لم تعد هذه الجلسة صالحة. تواصل مع دعم مستمعي Velmora: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>الاسم أو كلمة السر غير صحيحة، حاول مرة أخرى.</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>عذرًا، لم يعد هذا الحساب نشطًا. تواصل مع دعم مستمعي Velmora: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>عذرًا، هذا الحساب غير مصرح له. تواصل مع دعم مستمعي Velmora: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>عذرًا، بلغت الحد الأقصى للمحطات، ولم تُنشأ المحطة.</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>المحطة غير موجودة.</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>اسم المستخدم غير صالح</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>كلمة السر غير صالحة</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>جارٍ التحميل...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>هذه آخر نافذة. </translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>هل تريد حقًا إنهاء Velmora؟ </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    هل ما زلت هنا؟ </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>لا يوجد اتصال بالشبكة.</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>قد تكون الشبكة مزدحمة.</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>نعم</translation>
    </message>
    <message>
        <source>No</source>
        <translation>لا</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>فنان</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>أغنية</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>البداية</translation>
    </message>
</context>
<context>
    <name>WelcomeDlg</name>
    <message>
        <source>Dialog</source>
        <translation>نافذة</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>مرحبًا بك في Velmora</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>للاستماع مجانًا إلى راديو خاص بك لا يشغّل إلا الموسيقى التي تحبها
فعّل Velmora على هذا الجهاز.

اختر «تفعيل Velmora» أدناه.</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>تفعيل Velmora</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>خروج</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>هذه آخر نافذة. هل تريد حقًا إنهاء Velmora؟ 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>لماذا هذه الأغنية؟</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>تم</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>حول</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>لم يحدث أي خطأ.</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>الأخطاء: %1. يساعد التقرير في معرفة السبب.</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>حفظ تقرير على ذاكرة USB</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>تقرير</translation>
    </message>
    <message>
        <source>Velmora</source>
        <translation>Velmora</translation>
    </message>
    <message>
        <source>System</source>
        <translation>النظام</translation>
    </message>
    <message>
        <source>The report cannot be saved. %1</source>
        <translation>تعذر حفظ التقرير. %1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>تم حفظ التقرير: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>المساحة لا تكفي أو الذاكرة تالفة.</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>يمكن الآن إخراج ذاكرة USB.</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>جارٍ حفظ التقرير...</translation>
    </message>
</context>
<context>
    <name>home::HomePage</name>
    <message>
        <source>Home</source>
        <translation>البداية</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>رجوع</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>رموز/أرقام</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>كبيرة</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>الراديو</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>زر الاختيار يشغّل الراديو.</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 بالمئة</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>صامت</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>كل الأغاني بالمستوى نفسه</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>صوت الأزرار</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>الصوت</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>مستوى صوت الراديو. تغيّره أزرار الصوت أثناء الموسيقى.</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>بعد %n دقيقة</numerusform>
            <numerusform>بعد دقيقة واحدة</numerusform>
            <numerusform>بعد دقيقتين</numerusform>
            <numerusform>بعد %n دقائق</numerusform>
            <numerusform>بعد %n دقيقة</numerusform>
            <numerusform>بعد %n دقيقة</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>أبدًا</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>قراءة العنصر المحدد بصوت</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>الشاشة</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>تعتم الصورة إذا لم يُضغط أي زر أثناء الموسيقى.</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>إيقاف التشغيل</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>سيتوقف الجهاز عن العمل.</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>إيقاف التشغيل الآن</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>إعادة التشغيل</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>سيُعاد تشغيل الجهاز. ويعود الراديو من تلقاء نفسه.</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>إعادة التشغيل الآن</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>إنهاء</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>ينهي الراديو والبداية.</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>إنهاء الآن</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1، محدد</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>صورة أكبر</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>تظهر الصورة الأكبر عند التشغيل التالي للراديو أو للبداية.</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>كما في النظام</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>اللغة والمنطقة</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>لغة كل النصوص وكيفية كتابة التواريخ والأوقات والأرقام.</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>المنطقة الزمنية هي منطقة النظام.</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>تعذّر تغيير المنطقة الزمنية. %1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>المنطقة الزمنية</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>لا يوجد نظام قوائم.</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>الشبكة</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>متصل بـ %1.</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>تعذر استخدام شبكة Wi-Fi هذه: كلمة السر خاطئة أو أنها بعيدة جدًا. %1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>جارٍ فحص الشبكة...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>غير متصل</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>لا عنوان</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 بالمئة</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 بالمئة، مفتوحة</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>كلمة سر %1</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>تتكون كلمة سر Wi-Fi من %1 أحرف على الأقل.</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>جارٍ الاتصال بـ %1...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>كل شيء على ما يرام: الخدمة تستجيب.</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>تعمل الخدمة على هذا الجهاز بدون الشبكة. %1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>لا توجد بطاقة شبكة في هذا الجهاز.</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>لا كابل موصول ولا شبكة Wi-Fi متصلة.</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>الجهاز متصل لكن الموجّه لا يعطيه عنوانًا. قد تفيد إعادة تشغيل الموجّه.</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>لا يقود الموجّه إلى شبكة أخرى، والخدمة غير موجودة في هذه الشبكة.</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>الشبكة موجودة لكن اسم الخدمة غير معروف. إما أن الاسم خاطئ أو أن الإنترنت منقطع.</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>الشبكة موجودة لكن الخدمة لا تستجيب. إما أنها لا تعمل أو أن الإنترنت منقطع.</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>الشبكة موجودة. %1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>لحظة واحدة</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>الراديو ينتظر ضغطة زر</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>توقف الراديو</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>تعذر على الراديو الوصول إلى خدمته. سيعود حالما يستطيع.</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>فشل الراديو عدة مرات مع أن خدمته تستجيب.</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>فشل الراديو عدة مرات. التقارير في البداية، حول.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>إعادة المحاولة</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>البداية</translation>
    </message>
</context>
<context>
    <name>home::OutputPane</name>
    <message>
        <source>Sound output</source>
        <translation>مخرج الصوت</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>من أين تخرج الموسيقى. يستخدمه الراديو عند تشغيله التالي.</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>المعتاد</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>الهواتف</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>تعمل الخدمة على هذا الجهاز وله فقط. للوصول إليها من هاتف شغّلها لشبكة المنزل؛ يوضح دليلها ذلك.</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>افتح هذا العنوان في متصفح هاتف على الشبكة نفسها: لربط راديو أو إدارة حسابك أو استخدام الهاتف جهاز تحكم ولوحة مفاتيح.</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>الخدمة تستجيب.</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>لم تُحدد خدمة. اختر واحدة من «الخدمة».</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>اسم الخدمة غير معروف.</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>الخدمة لا تستجيب.</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>شهادة الخدمة غير صالحة.</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>تستجيب الخدمة بخطأ.</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>ما يستجيب على هذا العنوان ليس الخدمة.</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>الخدمة</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>العنوان</translation>
    </message>
    <message>
        <source>none</source>
        <translation>لا شيء</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>اختبار</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>شُغّل الراديو لهذه الخدمة</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>استخدام خدمة أخرى</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>استخدام خدمة هذا الجهاز</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>جارٍ سؤال الخدمة...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>عنوان الخدمة</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>لم يتم إعداد أي خدمة. اختر خدمة منزلك أو اكتب عنوانها.</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>البصمة</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>استخدام هذه الخدمة</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>عدم استخدامها</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>قارن البصمة بالبصمة الظاهرة في صفحة الخدمة ‎/house. إذا اختلفتا فهناك ما ينتحل صفة الخدمة.</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>الخدمة تجيب وشهادتها صالحة.</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>الخدمة تجيب لكنها غير مشفّرة: يمكن لأي شخص في هذه الشبكة أن يقرأ ما يُرسل.</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>لا يمكن تغيير هذا. %1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>تشغيل</translation>
    </message>
    <message>
        <source>off</source>
        <translation>إيقاف</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>مؤقت النوم</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>تعذر ضبط مؤقت النوم. %1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>تتلاشى الموسيقى ثم تظلم الشاشة.</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>بقيت %n دقيقة.</numerusform>
            <numerusform>بقيت دقيقة واحدة.</numerusform>
            <numerusform>بقيت دقيقتان.</numerusform>
            <numerusform>بقيت %n دقائق.</numerusform>
            <numerusform>بقيت %n دقيقة.</numerusform>
            <numerusform>بقيت %n دقيقة.</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>إيقاف</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>بعد هذه الأغنية</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>بعد %n دقيقة</numerusform>
            <numerusform>بعد دقيقة واحدة</numerusform>
            <numerusform>بعد دقيقتين</numerusform>
            <numerusform>بعد %n دقائق</numerusform>
            <numerusform>بعد %n دقيقة</numerusform>
            <numerusform>بعد %n دقيقة</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>لم تُركَّب أي ذاكرة USB، ولا شيء على هذا الجهاز يركّبها (udisks2).</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>لا توجد ذاكرة USB يمكن الكتابة عليها. أدخل واحدة واختر هذا مرة أخرى.</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>تعذّر استخدام ذاكرة USB. %1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>المحطات والموسيقى</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>اختيار حساب</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>تفعيل هذا الراديو</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>تسجيل الدخول</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>استعادة كلمة السر</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>مرحبًا</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>إنشاء محطة</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>إعادة تسمية محطة</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>القائمة</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>المحطات</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>سجل الأغاني</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>النتائج</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>تشغيل أو إيقاف مؤقت</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>الأغنية التالية</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>لم يعجبني</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>أعجبني</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>أكثر من 64 كيلوبايت</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>تعذر إنشاء مجلده</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>لا إذن بالكتابة</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>يكتب فيه طرف آخر</translation>
    </message>
</context>
</TS>
