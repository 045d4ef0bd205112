<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>AboutDlg</name>
    <message>
        <source>About Velmora</source>
        <translation>Velmora について</translation>
    </message>
    <message>
        <source>With Velmora you can explore this vast trove of music to your heart&apos;s content.
Just drop the name of one of your favorite songs or artists into Velmora and
let the Prism Project go.

It will quickly scan its entire world of analyzed music, almost a century of popular recordings - new and old, well known and completely obscure - to find songs with interesting musical similarities to your choice.

Then sit back and enjoy as it creates a listening experience full of current and soon-to-be favorite songs for you.</source>
        <translation>Velmora で、膨大な音楽の宝庫を心ゆくまで探検できます。
好きな曲やアーティストの名前を Velmora に伝えて、
あとは Prism Project におまかせください。

分析された音楽の世界全体、一世紀近くの録音（新しい曲も古い曲も、有名な曲もまったく知られていない曲も）から、選んだ曲と音楽的に似た曲をすばやく見つけます。

あとはくつろいで、今のお気に入りとこれからのお気に入りをお楽しみください。</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>CreateStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Create a New Station</source>
        <translation>新しいステーションを作る</translation>
    </message>
    <message>
        <source>Station List</source>
        <translation>ステーション</translation>
    </message>
    <message>
        <source>Tell us one of your favorite
artists and we&apos;ll create a
station that explores that
part of the music universe.</source>
        <translation>好きなアーティストから
その音楽を探検する
ステーションを作ります。</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>記号/数字</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>大文字</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Artist Or Track</source>
        <translation>アーティストまたは曲</translation>
    </message>
    <message>
        <source>Please enter an artist or track name to create a new station</source>
        <translation>新しいステーションを作るには、アーティスト名か曲名を入力してください</translation>
    </message>
    <message>
        <source>Search station failed!You could try again!</source>
        <translation>検索できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Search...</source>
        <translation>検索中...</translation>
    </message>
    <message>
        <source>Search station failed,you could try again!</source>
        <translation>検索できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>No result for </source>
        <translation>見つかりません: </translation>
    </message>
    <message>
        <source>We found </source>
        <translation>検索結果: アーティスト </translation>
    </message>
    <message>
        <source> results by artists and </source>
        <translation> 件、曲 </translation>
    </message>
    <message>
        <source> results by tracks.Which did you mean ?</source>
        <translation> 件。どちらをお探しですか？</translation>
    </message>
    <message>
        <source> by </source>
        <translation> / </translation>
    </message>
    <message>
        <source>Create station list failed ,please try later!</source>
        <translation>ステーションを作れませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>読み込み中...</translation>
    </message>
    <message>
        <source>Create station failed,because system gets invalid data from Velmora!</source>
        <translation>Velmora から正しくないデータが届いたため、ステーションを作れませんでした。</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>ステーションの一覧を取得できませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Artist or Song</source>
        <translation>アーティストまたは歌</translation>
    </message>
</context>
<context>
    <name>EmailPwdDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>パスワード送信</translation>
    </message>
    <message>
        <source>Please input you Email
address to get the password.</source>
        <translation>メールアドレスを入力</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>記号/数字</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>大文字</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Email passowrd...</source>
        <translation>パスワードを送信中...</translation>
    </message>
    <message>
        <source>Can not get the password because of system error!</source>
        <translation>システムエラーのため、パスワードを取得できません。</translation>
    </message>
    <message>
        <source>Please check the email address your provided for instructions on retrieving your Velmora password.</source>
        <translation>Velmora のパスワードを再設定する方法をメールでお送りしました。ご確認ください。</translation>
    </message>
</context>
<context>
    <name>InternetRadioDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Activation Code</source>
        <translation>アクティベーションコード</translation>
    </message>
    <message>
        <source>Please go to    </source>
        <translation>このページを開いて    </translation>
    </message>
    <message>
        <source>and follow the instructions there to create a new account.</source>
        <translation>画面の案内に従い、新しいアカウントを作ってください。</translation>
    </message>
    <message>
        <source>Your activation code is:    </source>
        <translation>コード:    </translation>
    </message>
    <message>
        <source>When you are done with that, come back to this screen and click “continue.”</source>
        <translation>終わったらこの画面に戻り、「続ける」を選んでください。</translation>
    </message>
    <message>
        <source>Continue</source>
        <translation>続ける</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>お待ちください...</translation>
    </message>
    <message>
        <source>Please activate your device to continue.</source>
        <translation>続けるには、この機器を有効にしてください。</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>ログインできませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>アクティベーションコードを作れません。</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>アクティベーションコードを作れませんでした。もう一度お試しください。</translation>
    </message>
</context>
<context>
    <name>KeyLayout</name>
    <message>
        <source>Clear</source>
        <translation>全消去</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>空白</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>完了</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>キーボード</translation>
    </message>
</context>
<context>
    <name>LoadingDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Connect to Velmora failed!</source>
        <translation>Velmora に接続できませんでした。</translation>
    </message>
</context>
<context>
    <name>MenuDlg</name>
    <message>
        <source>Bookmark This Artist</source>
        <translation>このアーティストをブックマーク</translation>
    </message>
    <message>
        <source>Bookmark This Track</source>
        <translation>この曲をブックマーク</translation>
    </message>
    <message>
        <source>Do Not Play This Track For A Month</source>
        <translation>この曲を一か月間再生しない</translation>
    </message>
    <message>
        <source>Why Is This Track Playing</source>
        <translation>この曲が流れる理由</translation>
    </message>
    <message>
        <source>Create A New Station</source>
        <translation>新しいステーションを作る</translation>
    </message>
    <message>
        <source>Delete This Station</source>
        <translation>このステーションを削除</translation>
    </message>
    <message>
        <source>Rename This Station</source>
        <translation>このステーションの名前を変更</translation>
    </message>
    <message>
        <source>Switch User</source>
        <translation>アカウントを切り替え</translation>
    </message>
    <message>
        <source>Exit Velmora</source>
        <translation>Velmora を終了</translation>
    </message>
    <message>
        <source>Close Menu</source>
        <translation>メニューを閉じる</translation>
    </message>
</context>
<context>
    <name>MsgboxDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
</context>
<context>
    <name>QGuiApplication</name>
    <message>
        <source>QT_LAYOUT_DIRECTION</source>
        <translation>LTR</translation>
    </message>
</context>
<context>
    <name>RenameStationDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Rename this station</source>
        <translation>このステーションの名前を変更</translation>
    </message>
    <message>
        <source>Tell us the new station name
and we&apos;ll update it in your
station list.</source>
        <translation>新しい名前を入力すると、
一覧でも変わります。</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>記号/数字</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>大文字</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>数字</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Rename station failed, no station name supplied.</source>
        <translation>名前が入力されていないため、変更できませんでした。</translation>
    </message>
    <message>
        <source>Are you sure you want to rename this station as: 
</source>
        <translation>このステーションの名前を次のように変更しますか: 
</translation>
    </message>
    <message>
        <source>Rename station failed,you could try again.</source>
        <translation>ステーションの名前を変更できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Rename station...</source>
        <translation>名前を変更中...</translation>
    </message>
    <message>
        <source>Rename station list failed ,please try later!</source>
        <translation>ステーションの名前を変更できませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>読み込み中...</translation>
    </message>
    <message>
        <source>Get station list failed!</source>
        <translation>ステーションの一覧を取得できませんでした。</translation>
    </message>
    <message>
        <source>Get station list failed ,please try later!</source>
        <translation>ステーションの一覧を取得できませんでした。後でお試しください。</translation>
    </message>
</context>
<context>
    <name>SelectUserDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Select or create Velmora account.</source>
        <translation>Velmora のアカウントを選ぶか、作成してください。</translation>
    </message>
    <message>
        <source>New username</source>
        <translation>新しいアカウント</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>削除</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>お待ちください...</translation>
    </message>
    <message>
        <source>Do you already have a Velmora account ? </source>
        <translation>Velmora のアカウントをお持ちですか？ </translation>
    </message>
    <message>
        <source>We only keep max 5 accounts,you could delete one to continue.</source>
        <translation>アカウントは 5 個までです。続けるには一つ削除してください。</translation>
    </message>
    <message>
        <source>Can not generate device activation code!</source>
        <translation>アクティベーションコードを作れません。</translation>
    </message>
    <message>
        <source>Generate device activation code failed,you could try again!</source>
        <translation>アクティベーションコードを作れませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Are you sure you want to delete the user: </source>
        <translation>このアカウントを削除しますか: </translation>
    </message>
    <message>
        <source>Delete User...</source>
        <translation>アカウントを削除中...</translation>
    </message>
    <message>
        <source>Disassociate device failed because of network error. please try again later!</source>
        <translation>ネットワークエラーのため、機器の登録を解除できませんでした。後でもう一度お試しください。</translation>
    </message>
    <message>
        <source>Incorrect login,please try again!</source>
        <translation>ログインできませんでした。もう一度お試しください。</translation>
    </message>
</context>
<context>
    <name>SignInDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Sign in to your Velmora account</source>
        <translation>Velmora アカウントにログイン</translation>
    </message>
    <message>
        <source>Email:</source>
        <translation>メール:</translation>
    </message>
    <message>
        <source>Password:</source>
        <translation>パスワード:</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>記号/数字</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>大文字</translation>
    </message>
    <message>
        <source>Email Password</source>
        <translation>パスワード送信</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Enter your Velmora account...</source>
        <translation>Velmora アカウントを入力...</translation>
    </message>
    <message>
        <source>No information was entered.Please try again.</source>
        <translation>何も入力されていません。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Please wait...</source>
        <translation>お待ちください...</translation>
    </message>
    <message>
        <source>Incorrect Login ,please try again!</source>
        <translation>ログインできませんでした。もう一度お試しください。</translation>
    </message>
</context>
<context>
    <name>VelmoraMainDlg</name>
    <message>
        <source>Station List</source>
        <translation>ステーション</translation>
    </message>
    <message>
        <source>AD</source>
        <translation>広告</translation>
    </message>
    <message>
        <source>Thumbs Down</source>
        <translation>低評価</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>次へ</translation>
    </message>
    <message>
        <source>Play</source>
        <translation>再生</translation>
    </message>
    <message>
        <source>Thumbs Up</source>
        <translation>高評価</translation>
    </message>
    <message>
        <source>Artist:</source>
        <translation>歌手:</translation>
    </message>
    <message>
        <source>Album:</source>
        <translation>盤:</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Song History</source>
        <translation>再生履歴</translation>
    </message>
    <message>
        <source>Station:</source>
        <translation>ステーション:</translation>
    </message>
    <message>
        <source>Unfortunately,our music licenses force us to limit the number of tracks you may skip each hour.</source>
        <translation>音楽の利用許諾により、一時間にスキップできる曲数には限りがあります。</translation>
    </message>
    <message>
        <source>       Invalid operation for audio ads</source>
        <translation>       広告中はできません</translation>
    </message>
    <message>
        <source>Thumbs up is not allowed on shared stations.</source>
        <translation>共有ステーションでは高評価を付けられません。</translation>
    </message>
    <message>
        <source>Thumbs down is not allowed on shared stations.</source>
        <translation>共有ステーションでは低評価を付けられません。</translation>
    </message>
    <message>
        <source>ThumbUp...</source>
        <translation>高評価...</translation>
    </message>
    <message>
        <source>Thumbs up track failed,you could try again.</source>
        <translation>高評価を付けられませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>ThumbDown...</source>
        <translation>低評価...</translation>
    </message>
    <message>
        <source>Thumbs down track failed,you could try again.</source>
        <translation>低評価を付けられませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Add feedback failed ,you could try again!</source>
        <translation>評価を保存できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Sleep...</source>
        <translation>曲を休ませています...</translation>
    </message>
    <message>
        <source>Sleep track failed,you could try again.</source>
        <translation>曲を休ませることができませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Sleep track failed ,you could try later!</source>
        <translation>曲を休ませることができませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Bookmark artist failed,you could try again.</source>
        <translation>アーティストをブックマークできませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Bookmark track failed,you could try again.</source>
        <translation>曲をブックマークできませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Add bookmark successful!</source>
        <translation>ブックマークしました。</translation>
    </message>
    <message>
        <source>Add bookmark failed ,please try later!</source>
        <translation>ブックマークできませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Explain track failed,you could try again.</source>
        <translation>理由を取得できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Explain track failed ,you could try again!</source>
        <translation>理由を取得できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Based on what you&apos;ve told us so far, we&apos;re playing </source>
        <translation>これまでの評価をもとに選んだ曲: </translation>
    </message>
    <message>
        <source> by </source>
        <translation> / </translation>
    </message>
    <message>
        <source> because it features </source>
        <translation>。この曲の特徴: </translation>
    </message>
    <message>
        <source>Velmora only permits to create 100 stations,so you can not create more stations!</source>
        <translation>Velmora で作れるステーションは 100 個までです。これ以上は作れません。</translation>
    </message>
    <message>
        <source>Tapestry station can not be deleted!</source>
        <translation>Tapestry ステーションは削除できません。</translation>
    </message>
    <message>
        <source>Are you sure you want to delete station: 
</source>
        <translation>このステーションを削除しますか？
「</translation>
    </message>
    <message>
        <source> ?</source>
        <translation>」</translation>
    </message>
    <message>
        <source>This station can not be deleted!</source>
        <translation>このステーションは削除できません。</translation>
    </message>
    <message>
        <source>Delete station...</source>
        <translation>ステーションを削除中...</translation>
    </message>
    <message>
        <source>Sorry.Delete station failed,you could try aganin.</source>
        <translation>ステーションを削除できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Delete station failed ,please try later!</source>
        <translation>ステーションを削除できませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Tapestry station can not be renamed!</source>
        <translation>Tapestry ステーションの名前は変更できません。</translation>
    </message>
    <message>
        <source>Are you sure you want to rename station: 
</source>
        <translation>このステーションの名前を変更しますか？
「</translation>
    </message>
    <message>
        <source>A share station cannot be renamed!</source>
        <translation>共有ステーションの名前は変更できません。</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>読み込み中...</translation>
    </message>
    <message>
        <source>Play the track failed,System occurs error!</source>
        <translation>システムエラーのため、曲を再生できませんでした。</translation>
    </message>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>ネットワークエラーが発生しました。接続を確認して、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Get playlist failed,you could try again!</source>
        <translation>再生リストを取得できませんでした。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Get play list failed ,please try later!</source>
        <translation>再生リストを取得できませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Get Ad metadata failed!</source>
        <translation>広告の情報を取得できませんでした。</translation>
    </message>
    <message>
        <source>Get track data failed.Please try later!</source>
        <translation>曲の情報を取得できませんでした。後でお試しください。</translation>
    </message>
    <message>
        <source>Now playing...</source>
        <translation>再生中です...</translation>
    </message>
</context>
<context>
    <name>VelmoraParentWidget</name>
    <message>
        <source>A network error has occurred.  Please check your network connection and try again.</source>
        <translation>ネットワークエラーが発生しました。接続を確認して、もう一度お試しください。</translation>
    </message>
    <message>
        <source>Velmora is conducting system maintenance. You will be able to listen to existing stations while they work on their systems, but you won&apos;t be able to create new stations, submit feedback or edit your account in any way until the maintenance is complete. Thanks for your patience.</source>
        <translation>Velmora はメンテナンス中です。ステーションはお聴きいただけますが、終わるまで新しいステーションの作成、評価、アカウントの変更はできません。ご了承ください。</translation>
    </message>
    <message>
        <source>Sorry,this token is invalid now .Please contact Velmora listener support at </source>
        <translation>このログインは無効になりました。Velmora リスナーサポートにご連絡ください: </translation>
    </message>
    <message>
        <source>Invalid username or password, please try again.</source>
        <translation>ユーザー名かパスワードが違います。もう一度お試しください。</translation>
    </message>
    <message>
        <source>Sorry,this account is no longer active.Please contact Velmora listener support at </source>
        <translation>このアカウントは現在使えません。Velmora リスナーサポートにご連絡ください: </translation>
    </message>
    <message>
        <source>Sorry,this account is authorized.Please contact Velmora listener support at </source>
        <translation>このアカウントは許可されていません。Velmora リスナーサポートにご連絡ください: </translation>
    </message>
    <message>
        <source>Sorry, Max stations Reached, create station failed.</source>
        <translation>ステーション数が上限に達したため、作成できませんでした。</translation>
    </message>
    <message>
        <source>Station does not exist.</source>
        <translation>ステーションがありません。</translation>
    </message>
    <message>
        <source>Invalid username</source>
        <translation>ユーザー名が正しくありません</translation>
    </message>
    <message>
        <source>Invalid password</source>
        <translation>パスワードが正しくありません</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>Buffering...</source>
        <translation>読み込み中...</translation>
    </message>
    <message>
        <source>You have reached the last window.</source>
        <translation>これが最後の画面です。</translation>
    </message>
    <message>
        <source>Are you sure you want to exit Velmora? </source>
        <translation>Velmora を終了しますか？ </translation>
    </message>
    <message>
        <source>    Are you still there ? </source>
        <translation>    まだお聴きですか？ </translation>
    </message>
    <message>
        <source>Unable to connect to network.</source>
        <translation>ネットワークに接続できません。</translation>
    </message>
    <message>
        <source>There may be network congestion.</source>
        <translation>ネットワークが混雑しているようです。</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>はい</translation>
    </message>
    <message>
        <source>No</source>
        <translation>いいえ</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>アーティスト</translation>
    </message>
    <message>
        <source>Track</source>
        <translation>曲</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>ホーム</translation>
    </message>
</context>
<context>
    <name>WelcomeDlg</name>
    <message>
        <source>Dialog</source>
        <translation>ダイアログ</translation>
    </message>
    <message>
        <source>Welcome to Velmora</source>
        <translation>Velmora へようこそ</translation>
    </message>
    <message>
        <source>To experience free personalized radio playing only the music you love
you will need to activate Velmora on this device.

Please select “Activate Velmora” below.</source>
        <translation>好きな音楽だけが流れる自分だけの無料ラジオを楽しむには、
この機器で Velmora を有効にしてください。
下の「Velmora を有効にする」を選んでください。</translation>
    </message>
    <message>
        <source>Activate Velmora</source>
        <translation>Velmora を有効にする</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>You have reached the last window.Are you sure you want to exit Velmora? 
</source>
        <translation>これが最後の画面です。Velmora を終了しますか？ 
</translation>
    </message>
</context>
<context>
    <name>WhyDlg</name>
    <message>
        <source>Why is this track playing?</source>
        <translation>この曲が流れる理由</translation>
    </message>
    <message>
        <source>I am done here</source>
        <translation>閉じる</translation>
    </message>
</context>
<context>
    <name>home::AboutPane</name>
    <message>
        <source>About</source>
        <translation>情報</translation>
    </message>
    <message>
        <source>Nothing has gone wrong.</source>
        <translation>問題は起きていません。</translation>
    </message>
    <message>
        <source>Things that went wrong: %1. A report helps to find out why.</source>
        <translation>起きた問題: %1 件。報告書が原因を調べる助けになります。</translation>
    </message>
    <message>
        <source>Save a report to a USB stick</source>
        <translation>報告書を USB メモリに保存</translation>
    </message>
    <message>
        <source>Report</source>
        <translation>報告書</translation>
    </message>
    <message>
        <source>Velmora</source>
        <translation>Velmora</translation>
    </message>
    <message>
        <source>System</source>
        <translation>システム</translation>
    </message>
    <message>
        <source>The report cannot be saved. %1</source>
        <translation>報告書を保存できません。%1</translation>
    </message>
    <message>
        <source>The report is saved: %1</source>
        <translation>報告書を保存しました: %1</translation>
    </message>
    <message>
        <source>There is not enough room, or the stick is damaged.</source>
        <translation>空きが足りないか、USB メモリが壊れています。</translation>
    </message>
    <message>
        <source>The stick can be taken out.</source>
        <translation>USB メモリを取り外せます。</translation>
    </message>
    <message>
        <source>Saving the report...</source>
        <translation>報告書を保存しています...</translation>
    </message>
</context>
<context>
    <name>home::HomePage</name>
    <message>
        <source>Home</source>
        <translation>ホーム</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>戻る</translation>
    </message>
    <message>
        <source>Symbol/Num</source>
        <translation>記号/数字</translation>
    </message>
    <message>
        <source>Caps</source>
        <translation>大文字</translation>
    </message>
    <message>
        <source>Radio</source>
        <translation>ラジオ</translation>
    </message>
    <message>
        <source>Select starts the radio.</source>
        <translation>決定キーでラジオが始まります。</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 パーセント</translation>
    </message>
    <message>
        <source>silent</source>
        <translation>消音</translation>
    </message>
    <message>
        <source>All tracks equally loud</source>
        <translation>すべての曲を同じ音量にする</translation>
    </message>
    <message>
        <source>Keys click</source>
        <translation>キーの音</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
    <message>
        <source>How loud the radio plays. The volume keys change it while music plays.</source>
        <translation>ラジオの音量です。音楽の再生中は音量キーでも変えられます。</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>%n 分後</numerusform>
        </translation>
    </message>
    <message>
        <source>never</source>
        <translation>しない</translation>
    </message>
    <message>
        <source>Read aloud what has the focus</source>
        <translation>選択中の項目を読み上げる</translation>
    </message>
    <message>
        <source>Screen</source>
        <translation>画面</translation>
    </message>
    <message>
        <source>When nobody presses a key while music plays, the picture dims.</source>
        <translation>音楽の再生中にキーが押されないと、画面が暗くなります。</translation>
    </message>
    <message>
        <source>Switch off</source>
        <translation>電源を切る</translation>
    </message>
    <message>
        <source>The device switches off.</source>
        <translation>機器の電源が切れます。</translation>
    </message>
    <message>
        <source>Switch off now</source>
        <translation>今すぐ電源を切る</translation>
    </message>
    <message>
        <source>Restart</source>
        <translation>再起動</translation>
    </message>
    <message>
        <source>The device restarts. The radio comes back by itself.</source>
        <translation>機器が再起動します。ラジオは自動で戻ります。</translation>
    </message>
    <message>
        <source>Restart now</source>
        <translation>今すぐ再起動</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Ends the radio and Home.</source>
        <translation>ラジオとホームを終了します。</translation>
    </message>
    <message>
        <source>Quit now</source>
        <translation>今すぐ終了</translation>
    </message>
    <message>
        <source>%1, chosen</source>
        <translation>%1、選択中</translation>
    </message>
    <message>
        <source>Larger picture</source>
        <translation>大きな表示</translation>
    </message>
    <message>
        <source>A larger picture is drawn from the next start of the radio or of Home.</source>
        <translation>大きな表示は、ラジオまたはホームの次の起動から有効になります。</translation>
    </message>
</context>
<context>
    <name>home::LanguagePane</name>
    <message>
        <source>As the system is set up</source>
        <translation>システムの設定に従う</translation>
    </message>
    <message>
        <source>Language and region</source>
        <translation>言語と地域</translation>
    </message>
    <message>
        <source>The language of all texts, and how dates, times and numbers are written.</source>
        <translation>すべての文字の言語と、日付、時刻、数の書き方です。</translation>
    </message>
    <message>
        <source>The time zone is that of the system.</source>
        <translation>タイムゾーンはシステムの設定に従います。</translation>
    </message>
    <message>
        <source>The time zone cannot be changed. %1</source>
        <translation>タイムゾーンを変更できません。%1</translation>
    </message>
    <message>
        <source>Time zone</source>
        <translation>タイムゾーン</translation>
    </message>
</context>
<context>
    <name>home::MenuCommand</name>
    <message>
        <source>There is no menu system.</source>
        <translation>メニューシステムがありません。</translation>
    </message>
</context>
<context>
    <name>home::NetworkPane</name>
    <message>
        <source>Network</source>
        <translation>ネットワーク</translation>
    </message>
    <message>
        <source>Connected to %1.</source>
        <translation>%1 に接続しました。</translation>
    </message>
    <message>
        <source>This Wi-Fi cannot be used: the password is wrong, or it is too far away. %1</source>
        <translation>この Wi-Fi は使えません。パスワードが違うか、遠すぎます。%1</translation>
    </message>
    <message>
        <source>Looking at the network...</source>
        <translation>ネットワークを確認中...</translation>
    </message>
    <message>
        <source>not connected</source>
        <translation>未接続</translation>
    </message>
    <message>
        <source>no address</source>
        <translation>アドレスなし</translation>
    </message>
    <message>
        <source>%1 percent</source>
        <translation>%1 パーセント</translation>
    </message>
    <message>
        <source>%1 percent, open</source>
        <translation>%1 パーセント、公開</translation>
    </message>
    <message>
        <source>Password of %1</source>
        <translation>%1 のパスワード</translation>
    </message>
    <message>
        <source>A Wi-Fi password has at least %1 characters.</source>
        <translation>Wi-Fi のパスワードは %1 文字以上です。</translation>
    </message>
    <message>
        <source>Connecting to %1...</source>
        <translation>%1 に接続中...</translation>
    </message>
    <message>
        <source>All is well: the service answers.</source>
        <translation>正常です。サービスは応答しています。</translation>
    </message>
    <message>
        <source>The service runs on this device, without the network. %1</source>
        <translation>サービスはネットワークなしで、この機器で動いています。%1</translation>
    </message>
    <message>
        <source>This device has no network card.</source>
        <translation>この機器にはネットワークカードがありません。</translation>
    </message>
    <message>
        <source>No cable is plugged in, and no Wi-Fi is connected.</source>
        <translation>ケーブルも Wi-Fi もつながっていません。</translation>
    </message>
    <message>
        <source>The device is connected, but the router gives it no address. Restarting the router may help.</source>
        <translation>機器は接続されていますが、ルーターからアドレスが届きません。ルーターの再起動をお試しください。</translation>
    </message>
    <message>
        <source>The router leads to no other network, and the service is not found in this one.</source>
        <translation>ルーターは他のネットワークにつながっておらず、ここにもサービスがありません。</translation>
    </message>
    <message>
        <source>The network is there, but nobody knows the name of the service. Either the name is wrong, or the internet is away.</source>
        <translation>ネットワークはありますが、サービスの名前が見つかりません。名前が違うか、インターネットがつながっていません。</translation>
    </message>
    <message>
        <source>The network is there, but the service does not answer. Either it does not run, or the internet is away.</source>
        <translation>ネットワークはありますが、サービスが応答しません。動いていないか、インターネットがつながっていません。</translation>
    </message>
    <message>
        <source>The network is there. %1</source>
        <translation>ネットワークはあります。%1</translation>
    </message>
</context>
<context>
    <name>home::NoticePage</name>
    <message>
        <source>One moment</source>
        <translation>お待ちください</translation>
    </message>
    <message>
        <source>The radio needs a key</source>
        <translation>キーを押してください</translation>
    </message>
    <message>
        <source>The radio has stopped</source>
        <translation>ラジオが停止しました</translation>
    </message>
    <message>
        <source>The radio cannot reach its service. It starts again as soon as it can.</source>
        <translation>サービスに接続できません。接続でき次第、始まります。</translation>
    </message>
    <message>
        <source>The radio has failed several times although its service answers.</source>
        <translation>サービスは応答していますが、ラジオが何度か失敗しました。</translation>
    </message>
    <message>
        <source>The radio has failed several times. Home, About keeps the reports.</source>
        <translation>ラジオが何度か失敗しました。報告書はホームの「情報」にあります。</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>もう一度試す</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>ホーム</translation>
    </message>
</context>
<context>
    <name>home::OutputPane</name>
    <message>
        <source>Sound output</source>
        <translation>音の出力</translation>
    </message>
    <message>
        <source>Where the music comes out. The radio uses it from its next start.</source>
        <translation>音楽を出す場所です。次にラジオが始まるときから使われます。</translation>
    </message>
    <message>
        <source>The usual one</source>
        <translation>いつもの出力</translation>
    </message>
</context>
<context>
    <name>home::PhonesPane</name>
    <message>
        <source>Phones</source>
        <translation>電話</translation>
    </message>
    <message>
        <source>The service runs on this device and only for it. To reach it from a telephone, start it so that it listens in the home network; its manual says how.</source>
        <translation>サービスはこの機器の中だけで動いています。電話から使うには、家のネットワーク用に起動してください。方法は説明書にあります。</translation>
    </message>
    <message>
        <source>Open this address in the browser of a telephone in the same network: to link a radio, to manage your account, or to use the telephone as a remote control and keyboard.</source>
        <translation>同じネットワークの電話のブラウザーでこのアドレスを開くと、ラジオの登録、アカウントの管理、電話をリモコンやキーボードとして使うことができます。</translation>
    </message>
</context>
<context>
    <name>home::ServiceHealth</name>
    <message>
        <source>The service answers.</source>
        <translation>サービスは応答しています。</translation>
    </message>
    <message>
        <source>No service is set up. Choose one under Service.</source>
        <translation>サービスが設定されていません。「サービス」で選んでください。</translation>
    </message>
    <message>
        <source>Nobody knows the name of the service.</source>
        <translation>サービスの名前が見つかりません。</translation>
    </message>
    <message>
        <source>The service does not answer.</source>
        <translation>サービスが応答しません。</translation>
    </message>
    <message>
        <source>The certificate of the service is not valid.</source>
        <translation>サービスの証明書が無効です。</translation>
    </message>
    <message>
        <source>The service answers with an error.</source>
        <translation>サービスがエラーを返しています。</translation>
    </message>
    <message>
        <source>What answers at this address is not the service.</source>
        <translation>このアドレスで応答しているのはサービスではありません。</translation>
    </message>
</context>
<context>
    <name>home::ServicePane</name>
    <message>
        <source>Service</source>
        <translation>サービス</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>アドレス</translation>
    </message>
    <message>
        <source>none</source>
        <translation>なし</translation>
    </message>
    <message>
        <source>Test it</source>
        <translation>確認する</translation>
    </message>
    <message>
        <source>The radio was started for this service</source>
        <translation>ラジオはこのサービス用に起動されました</translation>
    </message>
    <message>
        <source>Use another one</source>
        <translation>別のものを使う</translation>
    </message>
    <message>
        <source>Use the one of this device</source>
        <translation>この機器のものを使う</translation>
    </message>
    <message>
        <source>Asking the service...</source>
        <translation>サービスに問い合わせ中...</translation>
    </message>
    <message>
        <source>Address of the service</source>
        <translation>サービスのアドレス</translation>
    </message>
    <message>
        <source>No service is set up. Choose the one of your house, or type its address.</source>
        <translation>サービスが設定されていません。家のサービスを選ぶか、アドレスを入力してください。</translation>
    </message>
    <message>
        <source>Fingerprint</source>
        <translation>フィンガープリント</translation>
    </message>
    <message>
        <source>Use this service</source>
        <translation>このサービスを使う</translation>
    </message>
    <message>
        <source>Do not use it</source>
        <translation>使わない</translation>
    </message>
    <message>
        <source>Compare the fingerprint with the one on the service&apos;s own page, /house. If they differ, something else pretends to be the service.</source>
        <translation>サービスのページ /house にあるフィンガープリントと比べてください。違う場合は、別のものがサービスになりすましています。</translation>
    </message>
    <message>
        <source>The service answers, and its certificate is valid.</source>
        <translation>サービスが応答し、証明書は有効です。</translation>
    </message>
    <message>
        <source>The service answers, but it is not encrypted: everybody in this network could read along.</source>
        <translation>サービスは応答しますが、暗号化されていません。このネットワークの誰でも内容を読めます。</translation>
    </message>
</context>
<context>
    <name>home::SettingPane</name>
    <message>
        <source>This cannot be changed. %1</source>
        <translation>変更できません。%1</translation>
    </message>
    <message>
        <source>on</source>
        <translation>オン</translation>
    </message>
    <message>
        <source>off</source>
        <translation>オフ</translation>
    </message>
</context>
<context>
    <name>home::SleepPane</name>
    <message>
        <source>Sleep timer</source>
        <translation>スリープタイマー</translation>
    </message>
    <message>
        <source>The sleep timer cannot be set. %1</source>
        <translation>スリープタイマーを設定できません。%1</translation>
    </message>
    <message>
        <source>The music fades out and the screen turns black.</source>
        <translation>音楽が小さくなり、画面が消えます。</translation>
    </message>
    <message numerus="yes">
        <source>%n minutes are left.</source>
        <translation>
            <numerusform>残り %n 分です。</numerusform>
        </translation>
    </message>
    <message>
        <source>off</source>
        <translation>オフ</translation>
    </message>
    <message>
        <source>after this track</source>
        <translation>この曲の後</translation>
    </message>
    <message numerus="yes">
        <source>after %n minutes</source>
        <translation>
            <numerusform>%n 分後</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>home::UsbStick</name>
    <message>
        <source>No USB stick is mounted, and nothing on this device mounts one (udisks2).</source>
        <translation>USB メモリがマウントされておらず、この機器にはマウントする機能がありません (udisks2)。</translation>
    </message>
    <message>
        <source>There is no USB stick that can be written to. Put one in and choose this again.</source>
        <translation>書き込める USB メモリがありません。差し込んでから、もう一度選んでください。</translation>
    </message>
    <message>
        <source>The USB stick cannot be used. %1</source>
        <translation>USB メモリを使用できません。%1</translation>
    </message>
</context>
<context>
    <name>netcommon::Speech</name>
    <message>
        <source>Stations and music</source>
        <translation>ステーションと音楽</translation>
    </message>
    <message>
        <source>Choose an account</source>
        <translation>アカウントを選択</translation>
    </message>
    <message>
        <source>Activate this radio</source>
        <translation>このラジオを有効にする</translation>
    </message>
    <message>
        <source>Sign in</source>
        <translation>ログイン</translation>
    </message>
    <message>
        <source>Password reminder</source>
        <translation>パスワードの再設定</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>ようこそ</translation>
    </message>
    <message>
        <source>Create a station</source>
        <translation>ステーションを作る</translation>
    </message>
    <message>
        <source>Rename a station</source>
        <translation>ステーションの名前を変更</translation>
    </message>
    <message>
        <source>Menu</source>
        <translation>メニュー</translation>
    </message>
    <message>
        <source>Stations</source>
        <translation>ステーション</translation>
    </message>
    <message>
        <source>Song history</source>
        <translation>再生履歴</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>検索結果</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>再生または一時停止</translation>
    </message>
    <message>
        <source>Next track</source>
        <translation>次の曲</translation>
    </message>
    <message>
        <source>Thumbs down</source>
        <translation>低評価</translation>
    </message>
    <message>
        <source>Thumbs up</source>
        <translation>高評価</translation>
    </message>
</context>
<context>
    <name>platform::DeviceSettings</name>
    <message>
        <source>more than 64 KiB</source>
        <translation>64 KiB を超えています</translation>
    </message>
    <message>
        <source>its folder cannot be made</source>
        <translation>フォルダーを作れません</translation>
    </message>
    <message>
        <source>no permission to write</source>
        <translation>書き込みの権限がありません</translation>
    </message>
    <message>
        <source>somebody else is writing it</source>
        <translation>他で書き込み中です</translation>
    </message>
</context>
</TS>
